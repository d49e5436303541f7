#include "screens/help/ContactLine.h"

#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

#include <QPainter>

#include <cmath>

namespace quilmora {
namespace {

constexpr int pixelSize = 13;

} // namespace

// Not by setText(), which makes a mnemonic of "&".
ContactLine::ContactLine(const QString &text, QWidget *parent)
    : PaintedButton{text, parent},
      m_line{text, systemFont(pixelSize)}
{
    setFont(m_line.font());
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QSize ContactLine::sizeHint() const
{
    const QSizeF size = m_line.size(QWIDGETSIZE_MAX);
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(size.height())};
}

int ContactLine::heightForWidth(int width) const
{
    return static_cast<int>(m_line.size(width).height());
}

void ContactLine::paint(QPainter &painter)
{
    m_line.draw(painter, rect(), themeColor(ColorRole::primaryText));
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
