#include "screens/common/Sheet.h"

#include "screens/common/PixelGrid.h"
#include "screens/common/Scrim.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Translucent corners need a compositor there; a cut shape does not.
bool cutsItsShape()
{
    return QGuiApplication::platformName() == u"xcb"_s;
}

QBitmap shapeOf(const QRect &bounds)
{
    QBitmap shape{bounds.size()};
    shape.clear();
    QPainter painter{&shape};
    painter.fillPath(roundedRect(bounds, Sheet::cornerRadius), Qt::color1);
    return shape;
}

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
    setAttribute(Qt::WA_TranslucentBackground, !cutsItsShape());
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
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelGrid grid{painter};
    const QRectF bounds = grid.aligned(widget.rect());
    if (cutsItsShape()) {
        // Softened corners would let a line of the window's background through.
        painter.fillRect(bounds, color);
    } else {
        painter.fillPath(roundedRect(bounds, cornerRadius), color);
    }
    const double lineWidth = grid.lineWidth(1);
    painter.strokePath(roundedRect(insideLine(bounds, lineWidth), cornerRadius - lineWidth / 2),
                       QPen{themeColor(ColorRole::controlBorder), lineWidth});
}

void Sheet::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    move(placeOver(*parentWidget()->window(), size()));
    if (cutsItsShape()) {
        setMask(shapeOf(rect()));
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
