#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

class QMouseEvent;
class QWidget;
class QWindow;

namespace quilmora {

/// Delivers each press of a double or triple click only to the widget of the first press: the first click may
/// have put another widget below the pointer. To be installed on the application object. Main thread only.
class ClickFilter final : public QObject
{
    Q_OBJECT

public:
    explicit ClickFilter(QObject *parent = nullptr) : QObject{parent} {}

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool continuesSequence(const QMouseEvent &press) const;
    bool isForAnotherWidget(const QWindow &window, const QMouseEvent &press);

    QPointer<QWidget> m_target; ///< Of the first press of the sequence.
    Qt::MouseButton m_button = Qt::NoButton;
    quint64 m_pressTime = 0; ///< Of the last press, in milliseconds.
    QPoint m_pressPosition;  ///< Of the last press, on the screen.
    bool m_isDropping = false;
};

} // namespace quilmora
