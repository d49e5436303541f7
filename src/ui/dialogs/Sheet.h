#pragma once

#include <QPointer>
#include <QWidget>

namespace quilmora {

/// A modal dialog inside a window, which is darkened. Not a window of its own, which some desktops would
/// neither place nor keep focused. Escape and close() close and delete it; then the focus returns.
class Sheet final : public QWidget
{
    Q_OBJECT

public:
    /// Opens over the window of `owner`, and is deleted with `owner`. Takes ownership of `content`, which
    /// gets the focus, its size hint as far as the window is large enough, and paints its own background.
    /// Screen readers announce `title` and `message`.
    Sheet(QWidget &content, const QString &title, const QString &message, QWidget *owner);

    /// Paints the background and the hairline along the edge of a content.
    static void paintBackground(QWidget &content, const QColor &color);

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
    QWidget &m_content;
    const QPointer<QWidget> m_focusBefore;
};

} // namespace quilmora
