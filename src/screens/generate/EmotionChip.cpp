#include "screens/generate/EmotionChip.h"

#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QFontMetrics>
#include <QPainter>

namespace quilmora
{
namespace
{

constexpr QSize padding{14, 7};

QFont chipFont(bool selected)
{
    return systemFont(12, selected ? QFont::DemiBold : QFont::Normal);
}

} // namespace

EmotionChip::EmotionChip(const QString &text, QWidget *parent) : OptionButton{text, parent}, name{text}
{
    // The selected chip's heavier text is wider, and the chips after it have to move.
    connect(this, &EmotionChip::toggled, this, &EmotionChip::updateGeometry);
}

QSize EmotionChip::sizeHint() const
{
    const QFontMetrics metrics{chipFont(isChecked())};
    return QSize{metrics.horizontalAdvance(name), metrics.height()} + 2 * padding;
}

void EmotionChip::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const bool selected = isChecked();
    const PixelGrid grid{painter};
    const double lineWidth = grid.lineWidth(Theme::current().borderWidth(1));
    const QRectF whole = grid.aligned(rect());
    const QPainterPath outline = capsule(insideLine(whole, lineWidth));
    painter.fillPath(outline, themeColor(selected ? ColorRole::selectedFill : ColorRole::controlBackground));
    painter.strokePath(outline, QPen{themeColor(ColorRole::optionBorder), lineWidth});
    if (showsFocus()) {
        drawFocusRing(painter, capsule(whole));
    }
    painter.setFont(chipFont(selected));
    painter.setPen(themeColor(selected ? ColorRole::selectedChipText : ColorRole::primaryText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, name);
}

} // namespace quilmora
