#pragma once

#include "ui/widgets/ShadowHost.h"

#include <QImage>

namespace quilmora {

class PictureView;

/// Shows a generated cover.
class ResultSection final : public ShadowHost
{
    Q_OBJECT

public:
    explicit ResultSection(const QImage &image, QWidget *parent = nullptr);

Q_SIGNALS:
    void returnRequested();
    void saveRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    PictureView *m_picture;
};

} // namespace quilmora
