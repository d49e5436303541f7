#pragma once

#include "model/HistoryRecord.h"
#include "screens/common/ShadowGround.h"

#include <functional>

class QVBoxLayout;

namespace quilmora
{

class FilePanels;
class PictureView;
class TextLabel;

/// One cover of the history shown large, with its prompt, and a button that saves a copy of the picture. The
/// picture takes the room that the other items leave. The view asks its owner to close it when its symbol,
/// its button or its empty parts are clicked.
class ImagePreviewView final : public ShadowGround
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ImagePreviewView)

public:
    /// `panels` must outlive the view.
    ImagePreviewView(HistoryRecord record, std::function<void()> onClose, FilePanels &panels,
                     QWidget *parent = nullptr);
    ~ImagePreviewView() override = default;

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QLayout *makeCloseRow();
    QLayout *makeTexts();
    QLayout *makeActionRow();
    void insertPicture(QVBoxLayout &column, const QImage &image);
    void fitContents();
    void saveImage();

    const HistoryRecord record;
    const std::function<void()> onClose;
    FilePanels &panels;
    TextLabel *meta = nullptr;
    PictureView *picture = nullptr; ///< Null when there is no picture.
    bool pressedOnBackdrop = false;
};

} // namespace quilmora
