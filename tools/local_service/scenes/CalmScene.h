#pragma once

#include "local_service/scenes/Scene.h"

namespace quilmora
{

/// Flowing colour without a subject, for scenes that nothing else fits.
class CalmScene final : public Scene
{
public:
    /// `hue` from 0 to 359 sets the colour.
    explicit CalmScene(int hue) : m_hue{hue} {}

    ColourPalette palette() const override;
    double farBlur() const override { return 30; }
    void paintFar(SceneStage &stage) const override;
    void paintNear(SceneStage &stage) const override;
    void paintLight(SceneStage &stage) const override;

private:
    int m_hue;
};

} // namespace quilmora
