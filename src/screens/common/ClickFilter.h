#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

class QMouseEvent;
class QWidget;
class QWindow;

namespace quilmora
{

/// Lets each press of a double or triple click reach only the widget that was under the pointer at the first
/// one. Without it, the second press of a double click works whatever the first one has brought there. To be
/// installed on the application object; main thread only.
class ClickFilter final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ClickFilter)

public:
    explicit ClickFilter(QObject *parent = nullptr) : QObject{parent} {}
    ~ClickFilter() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool continuesSequence(const QMouseEvent &press) const;
    bool isForAnotherWidget(const QWindow &window, const QMouseEvent &press);

    QPointer<QWidget> target; ///< Of the first press of the sequence.
    Qt::MouseButton button = Qt::NoButton;
    quint64 pressTime = 0; ///< Of the last press, in milliseconds.
    QPoint pressPosition;  ///< Of the last press, on the screen.
    bool isDropping = false;
};

} // namespace quilmora
