#include "screens/common/ClampedLabel.h"

#include "screens/common/AccessiblePart.h"

#include <QPainter>

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

void ClampedLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    shown.draw(painter, rect(), themeColor(color));
}

} // namespace quilmora
