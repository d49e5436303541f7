#include "app/MainView.h"

#include "app/TopNavigationBar.h"
#include "screens/common/AccessiblePart.h"
#include "screens/common/Divider.h"
#include "screens/common/Theme.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr QSize minimumWindowSize{1000, 700};
/// For the frame that a window manager draws around the window, whose size is not known before it is shown.
constexpr QSize frameAllowance{16, 48};
/// The smallest one in which every control can be reached.
constexpr QSize minimumTile{624, 400};

/// Whether the desktop may give the window a size below its minimum. Qt on Wayland would keep to the minimum,
/// and the rest of the window would not be seen. Only tiling compositors do so, which are those that do not
/// name one of the large desktops.
bool isTiling()
{
    if (QGuiApplication::platformName() != u"wayland"_s) {
        return false;
    }
    static constexpr std::array floating{"GNOME",    "KDE",        "XFCE",   "LXQt",     "MATE",
                                         "Cinnamon", "X-Cinnamon", "Budgie", "Pantheon", "Unity"};
    const QByteArrayList names = qgetenv("XDG_CURRENT_DESKTOP").split(':');
    return std::none_of(floating.begin(), floating.end(),
                        [&names](const char *name) { return names.contains(name); });
}

} // namespace

MainView::MainView(ScreenFactory factory, QWidget *parent)
    : QWidget{parent},
      makeScreen{std::move(factory)},
      column{new QVBoxLayout{this}}
{
    setAccessiblePart(this, {QAccessible::Window});
    setWindowTitle(u"Quilmora"_s);
    followScreen();
    auto *bar = new TopNavigationBar{tab, this};
    connect(bar, &TopNavigationBar::tabChosen, this, &MainView::select);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    column->addWidget(new Divider{this});
    showScreen();
}

/// Limits the minimum size to the available area of the screen, now and when that area changes.
void MainView::followScreen()
{
    const QSize usual = isTiling() ? minimumTile : minimumWindowSize;
    setMinimumSize(usual.boundedTo(screen()->availableSize() - frameAllowance));
    disconnect(screenChanges);
    screenChanges = connect(screen(), &QScreen::availableGeometryChanged, this, &MainView::followScreen);
}

void MainView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &MainView::followScreen, Qt::UniqueConnection);
    followScreen();
}

void MainView::select(NavigationTab newTab)
{
    if (newTab != tab) {
        tab = newTab;
        showScreen();
    }
}

void MainView::showScreen()
{
    delete currentScreen;
    currentScreen = makeScreen(tab, this);
    column->addWidget(currentScreen, 1);
}

bool MainView::event(QEvent *event)
{
    if (event->type() == QEvent::ThemeChange) {
        Theme::current().followSystem();
    }
    return QWidget::event(event);
}

void MainView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.fillRect(rect(), themeColor(ColorRole::windowBackground));
}

} // namespace quilmora
