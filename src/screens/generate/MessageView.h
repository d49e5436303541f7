#pragma once

#include "screens/generate/MessageLines.h"
#include "ui/widgets/TextEditor.h"

namespace quilmora {

/// A message of the service as centered plain text that can be selected and copied unchanged. As high as its
/// lines; higher ones scroll inside a frame. Very long messages do not block the window.
class MessageView final : public TextEditor
{
    Q_OBJECT

public:
    /// `pixelSize` of the system font. `accessibleName` is the kind of message.
    MessageView(const QString &message, int pixelSize, const QString &accessibleName,
                QWidget *parent = nullptr);

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
    /// Of all lines at that width; of higher texts only the first lines, which are too high for a view
    /// without a frame.
    double textHeight(int width) const;

    const MessageLines m_lines;
};

} // namespace quilmora
