#include "screens/generate/FormOptions.h"

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

constexpr int cardPadding = 14;
constexpr int cardSpacing = 6;
constexpr int narrowestCard = 120;

QFont nameFont() { return systemFont(13, QFont::DemiBold); }

QFont ratioFont() { return systemFont(10); }

Symbol symbolOf(const CoverSize &size) { return {size.iconName, 16, QFont::Medium}; }

constexpr QSize chipPadding{14, 7};

QFont chipFont(bool selected) { return systemFont(12, selected ? QFont::DemiBold : QFont::Normal); }

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
    return {narrowestCard, 2 * cardPadding + symbolOf(m_coverSize).extent() + texts + 2 * cardSpacing};
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
    QRectF line{0, cardPadding, static_cast<double>(width()), static_cast<double>(symbol.extent())};
    symbol.draw(painter, line, primary);

    const auto drawLine = [&](const QFont &font, const QColor &color, const QString &text) {
        line = {0, line.bottom() + cardSpacing, line.width(),
                static_cast<double>(QFontMetrics{font}.height())};
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, text);
    };
    drawLine(nameFont(), primary, m_coverSize.name);
    drawLine(ratioFont(), themeColor(selected ? ColorRole::selectedSecondaryText : ColorRole::secondaryText),
             m_coverSize.ratio);
}

EmotionChip::EmotionChip(const QString &name, QWidget *parent) : OptionButton{name, parent}, m_name{name}
{
    // The text of the selected chip is bolder, thus wider.
    connect(this, &EmotionChip::toggled, this, &EmotionChip::updateGeometry);
}

QSize EmotionChip::sizeHint() const
{
    const QFontMetrics metrics{chipFont(isChecked())};
    return QSize{metrics.horizontalAdvance(m_name), metrics.height()} + 2 * chipPadding;
}

void EmotionChip::paint(QPainter &painter)
{
    const bool selected = isChecked();
    const PixelSnapper grid{painter};
    const double lineWidth = grid.borderWidth();
    const QRectF whole = grid.aligned(rect());
    const QPainterPath outline = capsule(insideLine(whole, lineWidth));
    painter.fillPath(outline, themeColor(selected ? ColorRole::selectedFill : ColorRole::controlBackground));
    painter.strokePath(outline, QPen{themeColor(ColorRole::optionBorder), lineWidth});
    if (showsFocus()) {
        drawFocusRing(painter, capsule(whole));
    }
    painter.setFont(chipFont(selected));
    painter.setPen(themeColor(selected ? ColorRole::selectedChipText : ColorRole::primaryText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, m_name);
}

} // namespace quilmora
