#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// A neon plain under a dark sky: grid, horizon, light trails.
class TechScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 3; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
};

} // namespace quilmora
