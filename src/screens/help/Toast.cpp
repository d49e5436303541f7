#include "screens/help/Toast.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/ElidedText.h"

#include <QPainter>
#include <QTimerEvent>
#include <QVariantAnimation>

#include <algorithm>

namespace quilmora {
namespace {

constexpr int pixelSize = 13;
constexpr QSize padding{18, 10};
constexpr int bottomPadding = 60;
constexpr int sideMargin = 40;
/// With a larger radius the ends of many lines would lie outside.
constexpr double maximumRadius = 40;

} // namespace

Toast::Toast(QWidget *parent, std::chrono::milliseconds stay)
    : QWidget{parent},
      m_stay{stay},
      m_fade{new QVariantAnimation{this}}
{
    setAccessibleRole(this, {QAccessible::Notification});
    setFont(systemFont(pixelSize, QFont::Medium));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    m_fade->setEasingCurve(QEasingCurve::InOutSine);
    connect(m_fade, &QVariantAnimation::valueChanged, this, qOverload<>(&Toast::update));
    connect(m_fade, &QVariantAnimation::finished, this, [this] { setVisible(m_up); });
}

void Toast::showMessage(const QString &message)
{
    setAccessibleName(message);
    place();
    update();
    if (isVisible()) {
        announceAgain(this);
    }
    if (!m_up) {
        m_up = true;
        raise();
        show();
        fadeTo(1.0, fadeInTime);
    }
    startTimer(m_stay, Qt::PreciseTimer);
}

ElidedText Toast::text() const { return {message(), font(), ElidedText::unlimited, Qt::AlignHCenter}; }

void Toast::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    if (m_up) {
        m_up = false;
        fadeTo(0.0, fadeOutTime);
    }
}

void Toast::place()
{
    const QSize page = parentWidget()->size();
    const int room = std::max(1, page.width() - 2 * (sideMargin + padding.width()));
    const QSize size = text().size(room) + 2 * padding;
    setGeometry({{(page.width() - size.width()) / 2, page.height() - bottomPadding - size.height()}, size});
}

void Toast::fadeTo(double target, std::chrono::milliseconds time)
{
    const double start = opacity();
    m_fade->stop();
    m_fade->setDuration(static_cast<int>(time.count()));
    m_fade->setStartValue(start);
    m_fade->setEndValue(target);
    m_fade->start();
}

double Toast::opacity() const { return m_fade->currentValue().toDouble(); }

void Toast::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity());
    painter.fillPath(
        roundedRect(PixelSnapper{painter}.aligned(rect()), std::min(height() / 2.0, maximumRadius)),
        themeColor(ColorRole::toastBackground));
    text().draw(
        painter,
        QRectF{rect()}.adjusted(padding.width(), padding.height(), -padding.width(), -padding.height()),
        themeColor(ColorRole::toastText));
}

} // namespace quilmora
