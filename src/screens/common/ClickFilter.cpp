#include "screens/common/ClickFilter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace quilmora
{
namespace
{

QWidget *widgetAt(const QWindow &window, QPoint position)
{
    QWidget *topLevel = QWidget::find(window.winId());
    QWidget *child = topLevel != nullptr ? topLevel->childAt(position) : nullptr;
    return child != nullptr ? child : topLevel;
}

} // namespace

bool ClickFilter::eventFilter(QObject *watched, QEvent *event)
{
    // What a window does not get does not reach any of its widgets.
    if (!watched->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        isDropping =
            isForAnotherWidget(static_cast<QWindow &>(*watched), static_cast<const QMouseEvent &>(*event));
        return isDropping;
    case QEvent::MouseMove:
        return isDropping;
    case QEvent::MouseButtonRelease:
        return std::exchange(isDropping, false);
    default:
        return false;
    }
}

/// Whether Qt, too, would take the press for part of a double click.
bool ClickFilter::continuesSequence(const QMouseEvent &press) const
{
    const QStyleHints &hints = *QGuiApplication::styleHints();
    const QPoint distance = press.globalPosition().toPoint() - pressPosition;
    return press.button() == button &&
           press.timestamp() < pressTime + static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
           qMax(qAbs(distance.x()), qAbs(distance.y())) < hints.mouseDoubleClickDistance();
}

bool ClickFilter::isForAnotherWidget(const QWindow &window, const QMouseEvent &press)
{
    QWidget *pressed = widgetAt(window, press.position().toPoint());
    if (!continuesSequence(press)) {
        target = pressed;
    }
    button = press.button();
    pressTime = press.timestamp();
    pressPosition = press.globalPosition().toPoint();
    return pressed != target;
}

} // namespace quilmora
