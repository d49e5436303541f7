#include "screens/generate/SizeCard.h"

#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Symbol.h"
#include "screens/common/Theme.h"

#include <QFontMetrics>
#include <QPainter>

namespace quilmora
{
namespace
{

constexpr int verticalPadding = 14;
constexpr int spacing = 6;
constexpr int narrowestCard = 120;
constexpr double cornerRadius = 10;

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

SizeCard::SizeCard(const CoverSize &preset, QWidget *parent)
    : OptionButton{preset.name, parent},
      coverSize{preset}
{
    setAccessibleDescription(coverSize.ratio);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize SizeCard::sizeHint() const
{
    const int texts = QFontMetrics{nameFont()}.height() + QFontMetrics{ratioFont()}.height();
    return {narrowestCard, 2 * verticalPadding + symbolOf(coverSize).extent() + texts + 2 * spacing};
}

void SizeCard::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const bool selected = isChecked();
    const PixelGrid grid{painter};
    const double lineWidth = grid.lineWidth(Theme::current().borderWidth(selected ? 1.5 : 1.0));
    const QRectF whole = grid.aligned(rect());
    const QPainterPath outline = roundedRect(insideLine(whole, lineWidth), cornerRadius - lineWidth / 2);
    painter.fillPath(outline, themeColor(selected ? ColorRole::selectedFill : ColorRole::controlBackground));
    painter.strokePath(
        outline, QPen{themeColor(selected ? ColorRole::selectedBorder : ColorRole::optionBorder), lineWidth});
    if (showsFocus()) {
        drawFocusRing(painter, roundedRect(whole, cornerRadius));
    }

    const QColor primary = themeColor(selected ? ColorRole::selectedPrimaryText : ColorRole::primaryText);
    const Symbol symbol = symbolOf(coverSize);
    QRectF line{0, verticalPadding, static_cast<double>(width()), static_cast<double>(symbol.extent())};
    symbol.draw(painter, line, primary);

    const auto drawLine = [&](const QFont &font, const QColor &color, const QString &text) {
        line = {0, line.bottom() + spacing, line.width(), static_cast<double>(QFontMetrics{font}.height())};
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, text);
    };
    drawLine(nameFont(), primary, coverSize.name);
    drawLine(ratioFont(), themeColor(selected ? ColorRole::selectedSecondaryText : ColorRole::secondaryText),
             coverSize.ratio);
}

} // namespace quilmora
