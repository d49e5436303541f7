#pragma once

#include "ui/theme/Shadow.h"

#include <QWidget>

namespace quilmora {

/// A widget with a shadow, which its parent draws.
class ShadowSource
{
public:
    ShadowSource() = default;
    Q_DISABLE_COPY_MOVE(ShadowSource)
    virtual ~ShadowSource() = default;

    virtual Shadow shadow() const = 0;

    /// The shape of the shadow, in the widget's own coordinates.
    virtual QPainterPath outline() const = 0;
};

/// Draws the shadows of its children, which reach beyond their bounds.
class ShadowHost : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
