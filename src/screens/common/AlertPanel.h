#pragma once

#include <QWidget>

namespace quilmora
{

class ActionButton;

/// A short message with one button.
class AlertPanel final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AlertPanel)

public:
    ~AlertPanel() override = default;

    /// Shows the message on a sheet over the window of `owner`. Its button closes it, as do Return and
    /// Escape.
    static void open(const QString &title, const QString &message, const QString &buttonTitle,
                     QWidget *owner);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    AlertPanel(const QString &title, const QString &message, const QString &buttonTitle);

    ActionButton *button;
};

} // namespace quilmora
