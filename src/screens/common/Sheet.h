#pragma once

#include <QDialog>

namespace quilmora
{

/// A panel with rounded corners over a window, modal to it, in the middle of its upper part. Closed by Escape
/// and by code, and with the window by the key that quits; deletes itself when it is closed.
class Sheet : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Sheet)

public:
    /// In device-independent pixels.
    static constexpr double cornerRadius = 12;

    /// `parent` is anything in the window that the sheet belongs to.
    explicit Sheet(QWidget *parent);
    ~Sheet() override = default;

    /// Leaves the ground to a content that covers the whole sheet: painted by both, its corners would be too
    /// light or too dark.
    void leaveGroundToContent() { paintsGround = false; }

    /// Paints a sheet's ground and the hairline along its edge on a widget that covers one.
    static void paintGround(QWidget &widget, const QColor &color);

protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool paintsGround = true;
};

} // namespace quilmora
