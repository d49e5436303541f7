#include "screens/generate/StepHeader.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace quilmora {
namespace {

constexpr int discDiameter = 22;
constexpr int spacing = 8;

QFont titleFont()
{
    return systemFont(14, QFont::DemiBold);
}

} // namespace

StepHeader::StepHeader(int number, QString title, QWidget *parent)
    : QWidget{parent},
      m_number{number},
      m_title{std::move(title)}
{
    setAccessibleRole(this, {QAccessible::StaticText});
    setAccessibleName(m_title);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize StepHeader::sizeHint() const
{
    const QFontMetrics metrics{titleFont()};
    return {discDiameter + spacing + metrics.horizontalAdvance(m_title),
            std::max(discDiameter, metrics.height())};
}

void StepHeader::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF disc{0, (height() - discDiameter) / 2.0, discDiameter, discDiameter};
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeColor(ColorRole::step));
    painter.drawEllipse(disc);
    painter.setPen(themeColor(ColorRole::onAccent));
    painter.setFont(systemFont(12, QFont::Bold));
    painter.drawText(disc, Qt::AlignCenter, QString::number(m_number));
    painter.setPen(themeColor(ColorRole::primaryText));
    painter.setFont(titleFont());
    painter.drawText(rect().adjusted(discDiameter + spacing, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     m_title);
}

} // namespace quilmora
