#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// Deep space: nebulae, stars, planets.
class SpaceScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 5; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
};

} // namespace quilmora
