#include "screens/common/ProgressSpinner.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/Theme.h"

#include <QPainter>
#include <QTimerEvent>

#include <chrono>

namespace quilmora
{
namespace
{

constexpr int spokes = 12;
constexpr auto stepTime = std::chrono::milliseconds{83};

} // namespace

ProgressSpinner::ProgressSpinner(int size, const QString &accessibleName, QWidget *parent)
    : QWidget{parent},
      diameter{size}
{
    setAccessiblePart(this, {QAccessible::ProgressBar, true});
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ProgressSpinner::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF{rect()}.center());
    const double outer = diameter / 2.0 - diameter / 20.0;
    const double inner = outer * 0.52;
    const double width = diameter / 11.0;
    for (int spoke = 0; spoke < spokes; ++spoke) {
        QColor color = themeColor(ColorRole::primaryText);
        const int age = (step - spoke + spokes) % spokes;
        color.setAlphaF(color.alphaF() * (1.0F - 0.075F * static_cast<float>(age)));
        painter.setPen({color, width, Qt::SolidLine, Qt::RoundCap});
        painter.drawLine(QPointF{0, -inner}, QPointF{0, -outer + width / 2});
        painter.rotate(360.0 / spokes);
    }
}

void ProgressSpinner::showEvent(QShowEvent * /*event*/)
{
    timer.start(static_cast<int>(stepTime.count()), this);
}

void ProgressSpinner::hideEvent(QHideEvent * /*event*/)
{
    timer.stop();
}

void ProgressSpinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == timer.timerId()) {
        step = (step + 1) % spokes;
        update();
    }
}

} // namespace quilmora
