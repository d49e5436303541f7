#include "app/MainView.h"

#include "app/TopNavigationBar.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Theme.h"

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

namespace quilmora {
namespace {

constexpr QSize minimumWindowSize{1000, 700};
/// For the frame of the window manager, whose size is unknown before the window is shown.
constexpr QSize frameAllowance{16, 48};
/// Every control can be reached by scrolling.
constexpr QSize minimumTileSize{624, 400};

/// Whether a tiling Wayland compositor may give the window less than its minimum size, where Qt would keep
/// the minimum and cut off the rest. Assumed of all but the large desktops.
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

class Divider final : public QWidget
{
public:
    explicit Divider(QWidget *parent) : QWidget{parent} { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter{this}.fillRect(rect(), themeColor(ColorRole::separator));
    }
};

} // namespace

MainView::MainView(ScreenFactory makeScreen, QWidget *parent)
    : QWidget{parent},
      m_makeScreen{std::move(makeScreen)},
      m_column{new QVBoxLayout{this}}
{
    setAccessibleRole(this, {QAccessible::Window});
    setWindowTitle(u"Quilmora"_s);
    followScreen();
    auto *bar = new TopNavigationBar{m_tab, this};
    connect(bar, &TopNavigationBar::tabChosen, this, &MainView::select);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    m_column->addWidget(bar);
    m_column->addWidget(new Divider{this});
    showScreen();
}

/// Limits the minimum size to the available area of the screen, now and when that area changes.
void MainView::followScreen()
{
    const QSize usual = isTiling() ? minimumTileSize : minimumWindowSize;
    setMinimumSize(usual.boundedTo(screen()->availableSize() - frameAllowance));
    disconnect(m_screenChanges);
    m_screenChanges = connect(screen(), &QScreen::availableGeometryChanged, this, &MainView::followScreen);
}

void MainView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &MainView::followScreen, Qt::UniqueConnection);
    followScreen();
}

void MainView::select(NavigationTab tab)
{
    if (tab != m_tab) {
        m_tab = tab;
        showScreen();
    }
}

void MainView::showScreen()
{
    delete m_currentScreen;
    m_currentScreen = m_makeScreen(m_tab, this);
    m_column->addWidget(m_currentScreen, 1);
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
