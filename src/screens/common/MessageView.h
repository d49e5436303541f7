#pragma once

#include "screens/common/MessageLines.h"
#include "screens/common/TextEditor.h"

namespace quilmora
{

/// A message from outside, whole and as plain text, centred: as high as its lines, and beyond a certain
/// height scrolling inside a frame. It can be selected and copied, and comes back to the character. Very long
/// messages do not hold up the window.
class MessageView final : public TextEditor
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessageView)

public:
    /// `pixelSize` of the system font. A message that is too long to be a name is called `nameOfLongText` to
    /// screen readers.
    MessageView(const QString &message, int pixelSize, const QString &nameOfLongText,
                QWidget *parent = nullptr);
    ~MessageView() override = default;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool isFramed() const override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    /// Of all lines in a view of that width, or somewhat more than a view without a frame has room for.
    double textHeight(int width) const;

    const MessageLines lines;
};

} // namespace quilmora
