#include "TabsBench.h"

#include "Report.h"
#include "app/TopNavigationBar.h"
#include "gallery/ApplicationFixture.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

NavTabButton &buttonOf(const gallery::ApplicationFixture &stage, NavigationTab tab)
{
    for (auto *button : stage.window()->findChildren<NavTabButton *>()) {
        if (button->accessibleName() == tab.rawValue()) {
            return *button;
        }
    }
    qFatal("There is no tab %s", qUtf8Printable(tab.rawValue()));
}

/// Makes the tab's screen, lays it out and paints all of it.
void open(const gallery::ApplicationFixture &stage, NavigationTab tab)
{
    buttonOf(stage, tab).click();
    QCoreApplication::processEvents();
    stage.window()->repaint();
}

} // namespace

void benchTabs()
{
    gallery::ApplicationFixture stage;
    stage.open();
    const QList<NavigationTab> &tabs = NavigationTab::allCases();
    for (const NavigationTab tab : tabs) {
        const NavigationTab other = tab == tabs.constLast() ? tabs.constFirst() : tabs.constLast();
        constexpr int runs = 15;
        const double milliseconds = medianOf(runs, [&] {
            open(stage, other);
            return millisecondsOf([&] { open(stage, tab); });
        });
        constexpr double frame = 16;
        report(u"click on %1 to its painted screen"_s.arg(tab.rawValue()), milliseconds, frame, 1.0);
    }
}

} // namespace quilmora::bench
