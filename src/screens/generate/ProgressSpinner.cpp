#include "screens/generate/ProgressSpinner.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Theme.h"

#include <QPainter>
#include <QTimerEvent>

#include <chrono>

namespace quilmora {
namespace {

constexpr int spokes = 12;
constexpr auto stepTime = std::chrono::milliseconds{83};

} // namespace

ProgressSpinner::ProgressSpinner(int diameter, const QString &accessibleName, QWidget *parent)
    : QWidget{parent},
      m_diameter{diameter}
{
    setAccessibleRole(this, {QAccessible::ProgressBar, true});
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ProgressSpinner::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF{rect()}.center());
    const double outer = m_diameter / 2.0 - m_diameter / 20.0;
    const double inner = outer * 0.52;
    const double width = m_diameter / 11.0;
    for (int spoke = 0; spoke < spokes; ++spoke) {
        QColor color = themeColor(ColorRole::primaryText);
        const int age = (m_step - spoke + spokes) % spokes;
        color.setAlphaF(color.alphaF() * (1.0F - 0.075F * static_cast<float>(age)));
        painter.setPen({color, width, Qt::SolidLine, Qt::RoundCap});
        painter.drawLine(QPointF{0, -inner}, QPointF{0, -outer + width / 2});
        painter.rotate(360.0 / spokes);
    }
}

void ProgressSpinner::showEvent(QShowEvent * /*event*/)
{
    m_timer.start(static_cast<int>(stepTime.count()), this);
}

void ProgressSpinner::hideEvent(QHideEvent * /*event*/)
{
    m_timer.stop();
}

void ProgressSpinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId()) {
        m_step = (m_step + 1) % spokes;
        update();
    }
}

} // namespace quilmora
