#include "app/MainView.h"

#include "app/TopNavigationBar.h"
#include "screens/common/AccessiblePart.h"
#include "screens/common/Divider.h"
#include "screens/common/Theme.h"

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr QSize minimumWindowSize{1000, 700};

} // namespace

MainView::MainView(ScreenFactory factory, QWidget *parent)
    : QWidget{parent},
      makeScreen{std::move(factory)},
      column{new QVBoxLayout{this}}
{
    setAccessiblePart(this, {QAccessible::Window});
    setWindowTitle(u"Quilmora"_s);
    setMinimumSize(minimumWindowSize);
    auto *bar = new TopNavigationBar{tab, this};
    connect(bar, &TopNavigationBar::tabChosen, this, &MainView::select);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    column->addWidget(new Divider{this});
    showScreen();
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
