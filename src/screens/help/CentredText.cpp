#include "screens/help/CentredText.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quilmora
{
namespace
{

/// Puts the lines one below the other, and gives what they take.
QSizeF layOut(QTextLayout &layout, double width)
{
    QTextOption option{Qt::AlignHCenter};
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QSizeF taken{0, 0};
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, taken.height()});
        taken = {std::max(taken.width(), line.naturalTextWidth()), taken.height() + std::ceil(line.height())};
    }
    layout.endLayout();
    return taken;
}

} // namespace

CentredText::CentredText(QString text, const QFont &font) : content{std::move(text)}, face{font} {}

QSizeF CentredText::size(double width) const
{
    QTextLayout layout{content, face};
    return layOut(layout, width);
}

void CentredText::draw(QPainter &painter, const QRectF &bounds, const QColor &color) const
{
    QTextLayout layout{content, face};
    layOut(layout, bounds.width());
    painter.setPen(color);
    layout.draw(&painter, bounds.topLeft());
}

} // namespace quilmora
