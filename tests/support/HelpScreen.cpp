#include "support/HelpScreen.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::test {

HelpScreen::HelpScreen(const AboutInformation &contents)
{
    auto *column = new QVBoxLayout{&m_frame};
    column->setContentsMargins({});
    m_page = new HelpView{contents, &m_frame};
    column->addWidget(m_page);
    // What the tabs leave of the smallest window.
    showWindow(m_frame, {1000, 643});
}

AboutInformation HelpScreen::sample()
{
    return {.version = u"1.0.0"_s,
            .email = u"someone@quilmora.example"_s,
            .website = u"quilmora.example/h?a=1&b=2"_s,
            .toastStay = 1h};
}

ContactLine *HelpScreen::emailLine()
{
    return line(u"客服邮箱：someone@quilmora.example"_s);
}

ContactLine *HelpScreen::websiteLine()
{
    return line(u"服务帮助：quilmora.example/h?a=1&b=2（仅技术支持与使用说明）"_s);
}

} // namespace quilmora::test
