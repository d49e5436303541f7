#pragma once

#include "screens/common/TextLabel.h"
#include "screens/help/ContactLine.h"
#include "screens/help/HelpView.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"

#include <QPointer>

namespace quilmora::test
{

/// The help screen in a window of its own.
class HelpScreen final
{
public:
    explicit HelpScreen(const HelpContents &contents);
    Q_DISABLE_COPY_MOVE(HelpScreen)
    ~HelpScreen() = default;

    /// Addresses of their own, and a toast that stays.
    static HelpContents sample();

    QWidget *window() { return &frame; }
    HelpView *view() { return page; }
    /// The lines of sample().
    ContactLine *emailLine();
    ContactLine *websiteLine();
    ContactLine *line(const QString &text) { return accessible::find<ContactLine>(&frame, text); }
    TextLabel *label(const QString &text) { return accessible::find<TextLabel>(&frame, text); }
    Toast *toast() { return page->findChild<Toast *>(); }

    /// Ends the screen as another tab does.
    void leave() { delete page; }

private:
    QWidget frame;
    QPointer<HelpView> page;
};

/// Lets the clock go on without letting any event come.
void letAMomentPass();

} // namespace quilmora::test
