#pragma once

#include <QWidget>

namespace quilmora {

class ActionButton;

/// A short message with one button.
class AlertDialog final : public QWidget
{
    Q_OBJECT

public:
    /// Shows the message as a sheet over the window of `owner`. Its button, Return and Escape close it.
    static void open(const QString &title, const QString &message, const QString &buttonTitle,
                     QWidget *owner);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    AlertDialog(const QString &title, const QString &message, const QString &buttonTitle);

    ActionButton *m_button;
};

} // namespace quilmora
