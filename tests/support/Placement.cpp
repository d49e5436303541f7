#include "support/Placement.h"

#include <QWidget>

#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora::test::placement {

QRect inWindow(const QWidget *piece) { return {piece->mapTo(piece->window(), QPoint{}), piece->size()}; }

int gapBelow(const QWidget *upper, const QWidget *lower)
{
    return inWindow(lower).top() - inWindow(upper).bottom() - 1;
}

int gapBeside(const QWidget *left, const QWidget *right)
{
    return inWindow(right).left() - inWindow(left).right() - 1;
}

bool centredAcross(const QRectF &piece, const QRectF &ground)
{
    return std::abs(piece.center().x() - ground.center().x()) <= 0.5;
}

QString padding(const QRectF &ground, const QRectF &content)
{
    return u"%1, %2, %3, %4"_s.arg(qRound(content.left() - ground.left()))
        .arg(qRound(content.top() - ground.top()))
        .arg(qRound(ground.right() - content.right()))
        .arg(qRound(ground.bottom() - content.bottom()));
}

} // namespace quilmora::test::placement
