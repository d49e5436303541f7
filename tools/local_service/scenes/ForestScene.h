#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// Mountains and firs in morning mist.
class ForestScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 3; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
    void paintLight(SceneStage &stage) const override;
};

} // namespace quilmora
