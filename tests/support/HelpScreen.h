#pragma once

#include "screens/help/ContactLine.h"
#include "screens/help/HelpView.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "ui/widgets/TextLabel.h"

namespace quilmora::test {

/// The help screen in a window of its own.
class HelpScreen final
{
public:
    explicit HelpScreen(const AboutInformation &contents);
    Q_DISABLE_COPY_MOVE(HelpScreen)
    ~HelpScreen() = default;

    /// Addresses of their own, and a toast that stays.
    static AboutInformation sample();

    QWidget *window() { return &m_frame; }
    HelpView *view() { return m_page; }
    /// The lines of sample().
    ContactLine *emailLine();
    ContactLine *websiteLine();
    ContactLine *line(const QString &text) { return accessible::find<ContactLine>(&m_frame, text); }
    TextLabel *label(const QString &text) { return accessible::find<TextLabel>(&m_frame, text); }
    Toast *toast() { return m_page->findChild<Toast *>(); }

private:
    QWidget m_frame;
    HelpView *m_page; ///< The frame's.
};

} // namespace quilmora::test
