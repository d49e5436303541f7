#pragma once

#include "local_service/scenes/Scene.h"

#include <QString>

#include <memory>

namespace quilmora
{

/// The background of a cover, chosen by the words of its scene text. Belongs to one thread.
class SceneBackground final
{
public:
    /// `scene` decides first, `style` only when nothing in `scene` is known. `fallback` gives a scene
    /// without any known word its colour.
    SceneBackground(const QString &scene, const QString &style, const QString &fallback);

    /// The colours that go with this background.
    ColourPalette palette() const;

    /// Paints over a whole cover of `size`; the light comes from `focus`.
    void paint(QPainter &cover, QSize size, QPointF focus, const ColourPalette &palette) const;

private:
    std::unique_ptr<Scene> m_scene;
    quint32 m_seed;
};

} // namespace quilmora
