#pragma once

#include <QPointer>
#include <QWidget>

namespace quilmora
{

/// A panel with rounded corners over a window, which is darkened and takes no input meanwhile. It lies inside
/// the window: on some desktops a window of its own could neither be placed nor keep the keyboard. Closed by
/// Escape and close(); then deletes itself, and the focus returns to where it was.
class Sheet final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Sheet)

public:
    /// In device-independent pixels.
    static constexpr double cornerRadius = 12;

    /// Opens over the window of `owner` and closes at the latest when `owner` is destroyed. Takes ownership
    /// of `panel`, which paints its own ground, is as large as its size hint or, in a smaller window, as the
    /// window, and gets the focus. Screen readers say `title` and `message` when the sheet opens.
    Sheet(QWidget &panel, const QString &title, const QString &message, QWidget *owner);
    ~Sheet() override = default;

    /// Paints the ground of a panel and the hairline along its edge.
    static void paintGround(QWidget &panel, const QColor &color);

Q_SIGNALS:
    void closed();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QWidget &content;
    const QPointer<QWidget> focusBefore;
};

} // namespace quilmora
