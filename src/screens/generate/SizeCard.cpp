#include "screens/generate/SizeCard.h"

#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"

#include <QFontMetrics>
#include <QPainter>

namespace quilmora {
namespace {

constexpr int verticalPadding = 14;
constexpr int spacing = 6;
constexpr int narrowestCard = 120;

QFont nameFont()
{
    return systemFont(13, QFont::DemiBold);
}

QFont ratioFont()
{
    return systemFont(10);
}

Symbol symbolOf(const CoverSize &size)
{
    return {size.iconName, 16, QFont::Medium};
}

} // namespace

SizeCard::SizeCard(const CoverSize &size, QWidget *parent)
    : OptionButton{size.name, parent},
      m_coverSize{size}
{
    setAccessibleDescription(m_coverSize.ratio);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize SizeCard::sizeHint() const
{
    const int texts = QFontMetrics{nameFont()}.height() + QFontMetrics{ratioFont()}.height();
    return {narrowestCard, 2 * verticalPadding + symbolOf(m_coverSize).extent() + texts + 2 * spacing};
}

void SizeCard::paint(QPainter &painter)
{
    const bool selected = isChecked();
    const PixelSnapper grid{painter};
    const double lineWidth = grid.borderWidth(selected ? 1.5 : 1.0);
    const QRectF whole = grid.aligned(rect());
    const QPainterPath outline =
        roundedRect(insideLine(whole, lineWidth), measures::cardRadius - lineWidth / 2);
    painter.fillPath(outline, themeColor(selected ? ColorRole::selectedFill : ColorRole::controlBackground));
    painter.strokePath(
        outline, QPen{themeColor(selected ? ColorRole::selectedBorder : ColorRole::optionBorder), lineWidth});
    if (showsFocus()) {
        drawFocusRing(painter, roundedRect(whole, measures::cardRadius));
    }

    const QColor primary = themeColor(selected ? ColorRole::selectedPrimaryText : ColorRole::primaryText);
    const Symbol symbol = symbolOf(m_coverSize);
    QRectF line{0, verticalPadding, static_cast<double>(width()), static_cast<double>(symbol.extent())};
    symbol.draw(painter, line, primary);

    const auto drawLine = [&](const QFont &font, const QColor &color, const QString &text) {
        line = {0, line.bottom() + spacing, line.width(), static_cast<double>(QFontMetrics{font}.height())};
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, text);
    };
    drawLine(nameFont(), primary, m_coverSize.name);
    drawLine(ratioFont(), themeColor(selected ? ColorRole::selectedSecondaryText : ColorRole::secondaryText),
             m_coverSize.ratio);
}

} // namespace quilmora
