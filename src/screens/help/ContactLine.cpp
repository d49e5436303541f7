#include "screens/help/ContactLine.h"

#include "screens/common/Fonts.h"
#include "screens/common/Theme.h"

#include <QPainter>

#include <cmath>

namespace quilmora
{
namespace
{

constexpr int pixelSize = 13;

} // namespace

// The text is not the button's own, which would take an "&" in an address for a key.
ContactLine::ContactLine(const QString &text, QWidget *parent)
    : PaintedButton{parent},
      line{text, systemFont(pixelSize)}
{
    setFont(line.font());
    setAccessibleName(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QSize ContactLine::sizeHint() const
{
    const QSizeF size = line.size(QWIDGETSIZE_MAX);
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(size.height())};
}

int ContactLine::heightForWidth(int width) const
{
    return static_cast<int>(line.size(width).height());
}

void ContactLine::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    line.draw(painter, rect(), themeColor(ColorRole::primaryText));
}

void ContactLine::focusInEvent(QFocusEvent *event)
{
    PaintedButton::focusInEvent(event);
    Q_EMIT focusChanged();
}

void ContactLine::focusOutEvent(QFocusEvent *event)
{
    PaintedButton::focusOutEvent(event);
    Q_EMIT focusChanged();
}

} // namespace quilmora
