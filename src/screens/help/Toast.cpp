#include "screens/help/Toast.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/Fonts.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>
#include <QTimerEvent>
#include <QVariantAnimation>

#include <algorithm>
#include <cmath>

namespace quilmora
{
namespace
{

constexpr int pixelSize = 13;
constexpr QSize padding{18, 10};
constexpr int bottomPadding = 60;
constexpr int sideMargin = 40;
/// Beyond it the ends of many lines would lie outside the capsule.
constexpr double greatestRadius = 40;

} // namespace

Toast::Toast(QWidget *parent, std::chrono::milliseconds theStay)
    : QWidget{parent},
      stay{theStay},
      fade{new QVariantAnimation{this}}
{
    setAccessiblePart(this, {QAccessible::Notification});
    setFont(systemFont(pixelSize, QFont::Medium));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    fade->setEasingCurve(QEasingCurve::InOutSine);
    connect(fade, &QVariantAnimation::valueChanged, this, qOverload<>(&Toast::update));
    connect(fade, &QVariantAnimation::finished, this, [this] { setVisible(up); });
}

void Toast::showMessage(const QString &message)
{
    line = CentredText{message, font()};
    setAccessibleName(message);
    place();
    update();
    if (isVisible()) {
        announceAgain(this);
    }
    if (!up) {
        up = true;
        raise();
        show();
        fadeTo(1.0, fadeInTime);
    }
    startTimer(stay, Qt::PreciseTimer);
}

void Toast::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    if (up) {
        up = false;
        fadeTo(0.0, fadeOutTime);
    }
}

void Toast::place()
{
    const QSize ground = parentWidget()->size();
    const int room = std::max(1, ground.width() - 2 * (sideMargin + padding.width()));
    const QSizeF text = line.size(room);
    const QSize size =
        QSize{static_cast<int>(std::ceil(text.width())), static_cast<int>(text.height())} + 2 * padding;
    setGeometry(
        {{(ground.width() - size.width()) / 2, ground.height() - bottomPadding - size.height()}, size});
}

void Toast::fadeTo(double target, std::chrono::milliseconds time)
{
    const double start = opacity();
    fade->stop();
    fade->setDuration(static_cast<int>(time.count()));
    fade->setStartValue(start);
    fade->setEndValue(target);
    fade->start();
}

double Toast::opacity() const
{
    return fade->currentValue().toDouble();
}

void Toast::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity());
    painter.fillPath(
        roundedRect(PixelGrid{painter}.aligned(rect()), std::min(height() / 2.0, greatestRadius)),
        themeColor(ColorRole::toastBackground));
    line.draw(painter,
              QRectF{rect()}.adjusted(padding.width(), padding.height(), -padding.width(), -padding.height()),
              themeColor(ColorRole::toastText));
}

} // namespace quilmora
