#include "screens/common/ClampedLabel.h"

#include "screens/common/AccessiblePart.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRegion>

namespace quilmora
{

ClampedLabel::ClampedLabel(const QString &text, const QFont &font, ColorRole role, int maximumLines,
                           QWidget *parent)
    : QWidget{parent},
      shown{text, font, maximumLines, Qt::AlignHCenter},
      color{role}
{
    setFont(font);
    setAccessiblePart(this, {QAccessible::StaticText});
    setAccessibleName(text);
    QSizePolicy policy{QSizePolicy::Expanding, QSizePolicy::Preferred};
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize ClampedLabel::sizeHint() const
{
    return {0, ClampedText::heightOfLines(font(), 1)};
}

void ClampedLabel::resizeEvent(QResizeEvent * /*event*/)
{
    // Glyphs may reach a little beyond their advance.
    constexpr int overhang = 2;
    const QFontMetrics metrics{font()};
    QRegion text;
    QRect row{0, 0, width(), ClampedText::heightOfLines(font(), 1)};
    for (const QString &line : shown.lines(width())) {
        const int beside = (width() - metrics.horizontalAdvance(line)) / 2 - overhang;
        text += row.adjusted(beside, 0, -beside, 0);
        row.translate(0, row.height());
    }
    setMask(text);
}

void ClampedLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    shown.draw(painter, rect(), themeColor(color));
}

} // namespace quilmora
