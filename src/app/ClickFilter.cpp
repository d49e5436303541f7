#include "app/ClickFilter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace quilmora {
namespace {

QWidget *widgetAt(const QWindow &window, QPoint position)
{
    QWidget *topLevel = QWidget::find(window.winId());
    QWidget *child = topLevel != nullptr ? topLevel->childAt(position) : nullptr;
    return child != nullptr ? child : topLevel;
}

} // namespace

bool ClickFilter::eventFilter(QObject *watched, QEvent *event)
{
    // The widgets get their events from the window.
    if (!watched->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_isDropping =
            isForAnotherWidget(static_cast<QWindow &>(*watched), static_cast<const QMouseEvent &>(*event));
        return m_isDropping;
    case QEvent::MouseMove:
        return m_isDropping;
    case QEvent::MouseButtonRelease:
        return std::exchange(m_isDropping, false);
    default:
        return false;
    }
}

/// By the same rules as Qt.
bool ClickFilter::continuesSequence(const QMouseEvent &press) const
{
    const QStyleHints &hints = *QGuiApplication::styleHints();
    const QPoint distance = press.globalPosition().toPoint() - m_pressPosition;
    return press.button() == m_button &&
           press.timestamp() < m_pressTime + static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
           qMax(qAbs(distance.x()), qAbs(distance.y())) < hints.mouseDoubleClickDistance();
}

bool ClickFilter::isForAnotherWidget(const QWindow &window, const QMouseEvent &press)
{
    QWidget *pressed = widgetAt(window, press.position().toPoint());
    if (!continuesSequence(press)) {
        m_target = pressed;
    }
    m_button = press.button();
    m_pressTime = press.timestamp();
    m_pressPosition = press.globalPosition().toPoint();
    return pressed != m_target;
}

} // namespace quilmora
