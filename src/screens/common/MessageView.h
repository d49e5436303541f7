#pragma once

#include "screens/common/MessageLines.h"
#include "screens/common/TextEditor.h"

namespace quilmora
{

/// A message from outside, whole and as plain text, centred: as high as its lines, and beyond a certain
/// height scrolling inside a frame. The keyboard moves a cursor in it. It can be selected and copied, and
/// comes back to the character. Very long messages do not hold up the window.
class MessageView final : public TextEditor
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessageView)

public:
    /// `pixelSize` of the system font. `accessibleName` names the kind of message; screen readers read the
    /// message itself as the text of the view.
    MessageView(const QString &message, int pixelSize, const QString &accessibleName,
                QWidget *parent = nullptr);
    ~MessageView() override = default;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool isFramed() const override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    /// Of all lines in a view of that width, or somewhat more than a view without a frame has room for.
    double textHeight(int width) const;

    const MessageLines lines;
};

} // namespace quilmora
