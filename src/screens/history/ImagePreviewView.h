#pragma once

#include "model/HistoryRecord.h"
#include "ui/widgets/ShadowHost.h"

#include <functional>

class QVBoxLayout;

namespace quilmora {

class FileDialogs;
class PictureView;
class TextLabel;

/// One cover of the history, large, with its prompt and a button that saves the picture, which is as large as
/// the other items permit. A click on the close buttons or on the background calls `onClose`.
class ImagePreviewView final : public ShadowHost
{
    Q_OBJECT

public:
    /// `dialogs` must outlive the view.
    ImagePreviewView(HistoryRecord record, std::function<void()> onClose, FileDialogs &dialogs,
                     QWidget *parent = nullptr);

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

    const HistoryRecord m_record;
    const std::function<void()> m_onClose;
    FileDialogs &m_dialogs;
    TextLabel *m_meta = nullptr;
    PictureView *m_picture = nullptr; ///< Null when there is no picture.
    bool m_pressedOnBackdrop = false;
};

} // namespace quilmora
