#pragma once

#include "screens/common/ShadowGround.h"

#include <QImage>

namespace quilmora
{

class PictureView;

/// What the generate screen shows when a cover has been made.
class ResultSection final : public ShadowGround
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ResultSection)

public:
    explicit ResultSection(const QImage &image, QWidget *parent = nullptr);
    ~ResultSection() override = default;

Q_SIGNALS:
    void returnRequested();
    void saveRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    PictureView *picture;
};

} // namespace quilmora
