#include "HelpScreen.h"

#include <QElapsedTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::test
{

HelpScreen::HelpScreen(const HelpContents &contents)
{
    auto *column = new QVBoxLayout{&frame};
    column->setContentsMargins({});
    page = new HelpView{contents, &frame};
    column->addWidget(page);
    // What the tabs leave of the smallest window.
    showWindow(frame, {1000, 643});
}

HelpContents HelpScreen::sample()
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

void letAMomentPass()
{
    QElapsedTimer clock;
    clock.start();
    while (clock.nsecsElapsed() < 3'000'000) {
    }
}

} // namespace quilmora::test
