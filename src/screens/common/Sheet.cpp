#include "screens/common/Sheet.h"

#include "screens/common/Scrim.h"
#include "screens/common/Theme.h"
#include "screens/common/WindowGround.h"

#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>

#include <algorithm>

namespace quilmora
{
namespace
{

/// Over the window's middle, small sheets a little higher, and not beyond the screen as long as they fit
/// there.
QPoint placeOver(const QWidget &window, QSize size)
{
    const QRect over = window.geometry();
    const QRect screen = window.screen()->availableGeometry();
    const int room = over.height() - size.height();
    const bool isSmall = 2 * size.height() < over.height();
    const int x = over.x() + (over.width() - size.width()) / 2;
    const int y = over.y() + std::max(0, isSmall ? room / 3 : room / 2);
    return {std::max(screen.left(), std::min(x, screen.right() + 1 - size.width())),
            std::max(screen.top(), std::min(y, screen.bottom() + 1 - size.height()))};
}

} // namespace

Sheet::Sheet(QWidget *parent) : QDialog{parent, Qt::Sheet | Qt::FramelessWindowHint}
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground, !windowGround::needsMask());
    setWindowModality(Qt::WindowModal);
    // The window's own key does not reach it meanwhile.
    const auto *quit = new QShortcut{QKeySequence{Qt::CTRL | Qt::Key_Q}, this};
    connect(quit, &QShortcut::activated, this, [this] {
        close();
        parentWidget()->window()->close();
    });
}

void Sheet::paintGround(QWidget &widget, const QColor &color)
{
    QPainter painter{&widget};
    windowGround::draw(painter, widget.rect(), cornerRadius, color);
}

void Sheet::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    move(placeOver(*parentWidget()->window(), size()));
    if (windowGround::needsMask()) {
        setMask(windowGround::mask(rect(), cornerRadius));
    }
#ifndef Q_OS_MACOS
    if (!event->spontaneous()) {
        new Scrim{*this};
    }
#endif
}

void Sheet::paintEvent(QPaintEvent * /*event*/)
{
    if (paintsGround) {
        paintGround(*this, themeColor(ColorRole::windowBackground));
    }
}

} // namespace quilmora
