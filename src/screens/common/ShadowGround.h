#pragma once

#include "screens/common/Shadow.h"

#include <QWidget>

namespace quilmora
{

/// A widget with a shadow around it, which the ground that it lies on draws.
class ShadowCaster
{
public:
    ShadowCaster() = default;
    Q_DISABLE_COPY_MOVE(ShadowCaster)
    virtual ~ShadowCaster() = default;

    virtual Shadow shadow() const = 0;

    /// What casts the shadow, in the widget's own coordinates.
    virtual QPainterPath outline() const = 0;
};

/// A widget that draws the shadows of the shadow casters directly on it. They reach beyond the casters' own
/// bounds, which stay as large as what is to be seen and clicked.
class ShadowGround : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ShadowGround)

public:
    using QWidget::QWidget;
    ~ShadowGround() override = default;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
