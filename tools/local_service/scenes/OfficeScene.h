#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// A stately office at dusk: tall windows over a skyline, warm wood and lamps.
class OfficeScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 5; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
    void paintLight(SceneStage &stage) const override;
};

} // namespace quilmora
