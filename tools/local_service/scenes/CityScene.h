#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// A city by night: towers of lit windows over wet streets.
class CityScene final : public Scene
{
public:
    ColourPalette palette() const override;
    double farBlur() const override { return 3.5; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
    void paintLight(SceneStage &stage) const override;
};

} // namespace quilmora
