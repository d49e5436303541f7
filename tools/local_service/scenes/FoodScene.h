#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// A set table in a warm restaurant: wood, a steaming bowl, lights behind.
class FoodScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 6; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
};

} // namespace quilmora
