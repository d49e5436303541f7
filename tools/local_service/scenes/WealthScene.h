#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// Gold: a burst of rays, coins in the air and in stacks.
class WealthScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 7; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
};

} // namespace quilmora
