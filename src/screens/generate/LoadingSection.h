#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace quilmora {

/// An indeterminate progress indicator. Its timer runs only while it is visible.
class ProgressSpinner final : public QWidget
{
    Q_OBJECT

public:
    /// `diameter` in device-independent pixels.
    explicit ProgressSpinner(int diameter, const QString &accessibleName, QWidget *parent = nullptr);

    QSize sizeHint() const override { return {m_diameter, m_diameter}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    const int m_diameter;
    int m_step = 0;
    QBasicTimer m_timer;
};

/// Shows that a cover is being generated.
class LoadingSection final : public QWidget
{
    Q_OBJECT

public:
    explicit LoadingSection(QWidget *parent = nullptr);
};

} // namespace quilmora
