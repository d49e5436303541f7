#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace quilmora
{

/// A circular progress indicator without an end; it turns, and uses a timer, only while it is on screen.
class ProgressSpinner final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProgressSpinner)

public:
    /// `diameter` in device-independent pixels.
    explicit ProgressSpinner(int diameter, const QString &accessibleName, QWidget *parent = nullptr);
    ~ProgressSpinner() override = default;

    QSize sizeHint() const override { return {diameter, diameter}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    const int diameter;
    int step = 0;
    QBasicTimer timer;
};

} // namespace quilmora
