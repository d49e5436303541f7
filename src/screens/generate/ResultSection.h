#pragma once

#include "screens/common/ShadowGround.h"

#include <QImage>

namespace quilmora
{

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
};

} // namespace quilmora
