#include "screens/help/CenteredText.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quilmora {
namespace {

/// Gives the size of all lines.
QSizeF layOut(QTextLayout &layout, double width)
{
    QTextOption option{Qt::AlignHCenter};
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QSizeF size{0, 0};
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, size.height()});
        size = {std::max(size.width(), line.naturalTextWidth()), size.height() + std::ceil(line.height())};
    }
    layout.endLayout();
    return size;
}

} // namespace

CenteredText::CenteredText(QString text, const QFont &font) : m_text{std::move(text)}, m_font{font} {}

QSizeF CenteredText::size(double width) const
{
    QTextLayout layout{m_text, m_font};
    return layOut(layout, width);
}

void CenteredText::draw(QPainter &painter, const QRectF &bounds, const QColor &color) const
{
    QTextLayout layout{m_text, m_font};
    layOut(layout, bounds.width());
    painter.setPen(color);
    layout.draw(&painter, bounds.topLeft());
}

} // namespace quilmora
