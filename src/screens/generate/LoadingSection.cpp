#include "screens/generate/LoadingSection.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/TextLabel.h"

#include <QPainter>
#include <QTimerEvent>
#include <QVBoxLayout>

#include <chrono>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int spokes = 12;
constexpr auto stepTime = std::chrono::milliseconds{83};

constexpr int minimumSectionHeight = 400;
constexpr int spacing = 18;
constexpr int spinnerDiameter = 32;

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

void ProgressSpinner::hideEvent(QHideEvent * /*event*/) { m_timer.stop(); }

void ProgressSpinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId()) {
        m_step = (m_step + 1) % spokes;
        update();
    }
}

LoadingSection::LoadingSection(QWidget *parent) : QWidget{parent}
{
    const QString title = u"正在生成封面..."_s;
    const QString hint = u"请稍候，火山引擎正在生成中"_s;
    setMinimumHeight(minimumSectionHeight);
    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    column->addStretch();
    column->addWidget(new ProgressSpinner{spinnerDiameter, title, this}, 0, Qt::AlignHCenter);
    column->addWidget(makeNotification(title, hint, {16, QFont::Medium}, this), 0, Qt::AlignHCenter);
    column->addWidget(new TextLabel{hint, {12}, this}, 0, Qt::AlignHCenter);
    column->addStretch();
}

} // namespace quilmora
