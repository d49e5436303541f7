#pragma once

#include "screens/help/HelpView.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "ui/widgets/TextLabel.h"

#include <QVBoxLayout>

namespace quilmora::test {

/// The help screen in a window of its own.
class HelpScreen final
{
public:
    explicit HelpScreen(const AboutInformation &contents) : m_page{new HelpView{contents, &m_frame}}
    {
        auto *column = new QVBoxLayout{&m_frame};
        column->setContentsMargins({});
        column->addWidget(m_page);
        // What the tabs leave of the smallest window.
        showWindow(m_frame, {1000, 643});
    }
    Q_DISABLE_COPY_MOVE(HelpScreen)
    ~HelpScreen() = default;

    /// Addresses of their own, and a toast that stays.
    static AboutInformation sample()
    {
        return {.version = QStringLiteral("1.0.0"),
                .email = QStringLiteral("someone@quilmora.example"),
                .website = QStringLiteral("quilmora.example/h?a=1&b=2"),
                .toastStay = std::chrono::hours{1}};
    }

    QWidget *window() { return &m_frame; }
    HelpView *view() { return m_page; }
    /// The lines of sample().
    ContactLine *emailLine() { return line(QStringLiteral("客服邮箱：someone@quilmora.example")); }
    ContactLine *websiteLine()
    {
        return line(QStringLiteral("服务帮助：quilmora.example/h?a=1&b=2（仅技术支持与使用说明）"));
    }
    ContactLine *line(const QString &text) { return accessible::find<ContactLine>(&m_frame, text); }
    TextLabel *label(const QString &text) { return accessible::find<TextLabel>(&m_frame, text); }
    Toast *toast() { return m_page->findChild<Toast *>(); }

private:
    QWidget m_frame;
    HelpView *m_page; ///< The frame's.
};

} // namespace quilmora::test
