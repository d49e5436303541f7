#include "local_service/cover/PresenterPainter.h"

#include "local_service/cover/SoftLayer.h"
#include "local_service/scenes/LightEffects.h"

#include <QConicalGradient>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <numbers>
#include <utility>

namespace quilmora
{
namespace
{

constexpr double ringShare = 0.030; ///< Of the radius: the width of the ring.
constexpr double upperShare = 0.12; ///< How much of what is cut off a tall picture is cut above.

/// The square part of a picture that holds the face: the middle, of a tall picture the upper middle.
QRectF faceSquare(QSize size)
{
    const double side = std::min(size.width(), size.height());
    return {(size.width() - side) / 2, (size.height() - side) * upperShare, side, side};
}

QConicalGradient ringColours(QPointF centre, const ColourPalette &palette)
{
    QConicalGradient gradient{centre, 60};
    gradient.setColorAt(0, palette.accent);
    gradient.setColorAt(0.25, mixed(palette.accent, Qt::white, 0.65));
    gradient.setColorAt(0.5, palette.accent2);
    gradient.setColorAt(0.75, mixed(palette.accent2, Qt::white, 0.5));
    gradient.setColorAt(1, palette.accent);
    return gradient;
}

QRectF circle(QPointF centre, double radius)
{
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

} // namespace

PresenterPainter::PresenterPainter(QImage picture, const CoverLayout &layout, const ColourPalette &palette)
    : m_picture{std::move(picture)},
      m_layout{layout},
      m_palette{palette}
{
}

void PresenterPainter::paint(QPainter &cover, QSize size) const
{
    cover.save();
    paintSurroundings(cover, size);
    paintPicture(cover);
    paintRing(cover);
    cover.restore();
}

void PresenterPainter::paintSurroundings(QPainter &cover, QSize size) const
{
    const double radius = m_layout.radius;
    SoftLayer shadow{size, 0.125};
    shadow.painter().setPen(Qt::NoPen);
    shadow.painter().setBrush(faded(Qt::black, 0.6));
    shadow.painter().drawEllipse(circle(m_layout.focus + QPointF{0, 0.07 * radius}, 1.03 * radius));
    shadow.putOnto(cover, 0.09 * radius);

    SoftLayer halo{size, 0.125};
    halo.painter().setPen(QPen{ringColours(m_layout.focus, m_palette), 0.11 * radius});
    halo.painter().drawEllipse(circle(m_layout.focus, 1.0 * radius));
    halo.putOnto(cover, 0.10 * radius, QPainter::CompositionMode_Plus);
}

void PresenterPainter::paintPicture(QPainter &cover) const
{
    const QRectF target = circle(m_layout.focus, m_layout.radius);
    QPainterPath clip;
    clip.addEllipse(target);
    QRadialGradient backdrop{m_layout.focus - QPointF{0, 0.3 * m_layout.radius}, 1.3 * m_layout.radius};
    backdrop.setColorAt(0, mixed(m_palette.glow, m_palette.accent2, 0.4));
    backdrop.setColorAt(1, mixed(m_palette.base, m_palette.deep, 0.4));
    cover.fillPath(clip, backdrop);

    // A brush, not a clip: the circle's edge stays smooth. Scaled beforehand, or a large photo would flicker
    // with detail that a plain bilinear look-up skips over.
    const int side = static_cast<int>(std::ceil(target.width()));
    const QImage square = m_picture.copy(faceSquare(m_picture.size()).toAlignedRect())
                              .scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QBrush brush{square};
    brush.setTransform(QTransform::fromTranslate(target.left(), target.top()));
    cover.fillPath(clip, brush);

    QRadialGradient shade{m_layout.focus, m_layout.radius};
    shade.setColorAt(0.72, faded(m_palette.deep, 0));
    shade.setColorAt(1, faded(m_palette.deep, 0.45));
    cover.fillPath(clip, shade);
}

void PresenterPainter::paintRing(QPainter &cover) const
{
    const double radius = m_layout.radius;
    const double width = ringShare * radius;
    cover.setBrush(Qt::NoBrush);
    cover.setPen(QPen{faded(Qt::white, 0.95), width * 0.9});
    cover.drawEllipse(circle(m_layout.focus, radius + width * 0.4));
    cover.setPen(QPen{ringColours(m_layout.focus, m_palette), width * 1.1});
    cover.drawEllipse(circle(m_layout.focus, radius + width * 1.3));
    // A broken outer orbit.
    QPen orbit{ringColours(m_layout.focus, m_palette), width * 0.35, Qt::SolidLine, Qt::RoundCap};
    cover.setPen(orbit);
    const QRectF outer = circle(m_layout.focus, radius * 1.105);
    for (const auto &[begin, span] :
         {std::pair{20, 75}, std::pair{125, 30}, std::pair{195, 80}, std::pair{300, 42}}) {
        cover.drawArc(outer, begin * 16, span * 16);
    }
    cover.setPen(Qt::NoPen);
    for (const int degrees : {110, 180, 290}) {
        const double angle = degrees * std::numbers::pi / 180;
        const QPointF spot = m_layout.focus + radius * 1.105 * QPointF{std::cos(angle), -std::sin(angle)};
        lightEffects::glow(cover, spot, width * 2.2, m_palette.accent, 0.8);
        cover.setBrush(Qt::white);
        cover.drawEllipse(circle(spot, width * 0.45));
    }
}

} // namespace quilmora
