#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// A beach in the sun: sky, sea, sand and palm leaves.
class SeaScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 4; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
    void paintLight(SceneStage &stage) const override;
};

} // namespace quilmora
