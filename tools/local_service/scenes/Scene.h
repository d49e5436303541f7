#pragma once

#include "local_service/scenes/SceneStage.h"

#include <QtGlobal>

namespace quilmora
{

/// One kind of background. Stateless.
class Scene
{
public:
    Scene() = default;
    virtual ~Scene() = default;
    Q_DISABLE_COPY_MOVE(Scene)

    virtual ColourPalette palette() const = 0;
    /// How far out of focus the far part lies, in thousandths of the cover's shorter side.
    virtual double farBlur() const { return 4; }
    /// Covers the whole stage; comes out blurred.
    virtual void paintFar(SceneStage &stage) const = 0;
    /// What stands in focus, over the far part.
    virtual void paintNear(SceneStage &stage) const = 0;
    /// Soft light that is added over all that.
    virtual void paintLight(SceneStage &stage) const { Q_UNUSED(stage) }
};

} // namespace quilmora
