#include "local_service/cover/SceneBackground.h"

#include "local_service/cover/SoftLayer.h"
#include "local_service/scenes/SceneCatalogue.h"

#include <QCryptographicHash>
#include <QtEndian>

namespace quilmora
{
namespace
{

constexpr double farScale = 0.25;
constexpr double lightScale = 0.125;
constexpr double lightBlur = 11; ///< In thousandths of the shorter side.

/// The same on every machine and in every run, unlike Qt's own hash.
quint32 seedOf(const QString &text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
    return qFromBigEndian<quint32>(hash.constData());
}

} // namespace

SceneBackground::SceneBackground(const QString &scene, const QString &style, const QString &fallback)
    : m_seed{seedOf(scene.isEmpty() ? fallback : scene)}
{
    m_scene = sceneCatalogue::make(scene);
    if (!m_scene) {
        m_scene = sceneCatalogue::make(style);
    }
    if (!m_scene) {
        m_scene = sceneCatalogue::makeCalm(static_cast<int>(m_seed % 360));
    }
}

ColourPalette SceneBackground::palette() const
{
    return m_scene->palette();
}

void SceneBackground::paint(QPainter &cover, QSize size, QPointF focus, const ColourPalette &palette) const
{
    SoftLayer farLayer{size, farScale};
    SceneStage farStage{farLayer.painter(), size, focus, palette, QRandomGenerator{m_seed}};
    m_scene->paintFar(farStage);
    farLayer.putOnto(cover, m_scene->farBlur() * farStage.unit());

    SceneStage nearStage{cover, size, focus, palette, QRandomGenerator{m_seed + 1}};
    cover.save();
    m_scene->paintNear(nearStage);
    cover.restore();

    SoftLayer lightLayer{size, lightScale};
    SceneStage lightStage{lightLayer.painter(), size, focus, palette, QRandomGenerator{m_seed + 2}};
    m_scene->paintLight(lightStage);
    lightLayer.putOnto(cover, lightBlur * lightStage.unit(), QPainter::CompositionMode_Plus);
}

} // namespace quilmora
