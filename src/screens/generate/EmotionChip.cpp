#include "screens/generate/EmotionChip.h"

#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QFontMetrics>
#include <QPainter>

namespace quilmora {
namespace {

constexpr QSize padding{14, 7};

QFont chipFont(bool selected)
{
    return systemFont(12, selected ? QFont::DemiBold : QFont::Normal);
}

} // namespace

EmotionChip::EmotionChip(const QString &name, QWidget *parent) : OptionButton{name, parent}, m_name{name}
{
    // The text of the selected chip is bolder, thus wider.
    connect(this, &EmotionChip::toggled, this, &EmotionChip::updateGeometry);
}

QSize EmotionChip::sizeHint() const
{
    const QFontMetrics metrics{chipFont(isChecked())};
    return QSize{metrics.horizontalAdvance(m_name), metrics.height()} + 2 * padding;
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
