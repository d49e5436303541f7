#include "local_service/cover/CoverComposer.h"

#include "local_service/cover/CoverLayout.h"
#include "local_service/cover/PromptParts.h"
#include "local_service/cover/SoftLayer.h"
#include "local_service/cover/TitleFont.h"
#include "local_service/cover/TitleLayout.h"
#include "local_service/cover/TitlePainter.h"
#include "local_service/scenes/Backdrop.h"

#include <QConicalGradient>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::localservice::coverComposer {
namespace {

constexpr double ringShare = 0.030; ///< Of the radius: the width of the ring.
constexpr double upperShare = 0.12; ///< How much of what is cut off a tall picture is cut above.

void paintVignette(QPainter &cover, QSize size, const Palette &palette)
{
    const QPointF center{size.width() / 2.0, size.height() / 2.0};
    QRadialGradient vignette{center, std::hypot(center.x(), center.y())};
    vignette.setColorAt(0.6, faded(palette.deep, 0));
    vignette.setColorAt(1, faded(mixed(palette.deep, Qt::black, 0.5), 0.5));
    cover.fillRect(QRect{QPoint{}, size}, vignette);
}

QRectF circle(QPointF center, double radius)
{
    return {center.x() - radius, center.y() - radius, 2 * radius, 2 * radius};
}

void paintSurroundings(QPainter &cover, QSize size, const CoverLayout &layout, const QBrush &ring)
{
    const double radius = layout.radius;
    softLayer::put(cover, size, 0.06 * radius, [&](QPainter &shadow) {
        shadow.setPen(Qt::NoPen);
        shadow.setBrush(faded(Qt::black, 0.6));
        shadow.drawEllipse(circle(layout.focus + QPointF{0, 0.07 * radius}, 1.03 * radius));
    });
    const auto paintHalo = [&](QPainter &halo) {
        halo.setPen(QPen{ring, 0.12 * radius});
        halo.drawEllipse(circle(layout.focus, radius));
    };
    softLayer::put(cover, size, 0.06 * radius, paintHalo, QPainter::CompositionMode_Plus);
}

void paintPicture(QPainter &cover, const QImage &picture, const CoverLayout &layout, const Palette &palette)
{
    const QRectF target = circle(layout.focus, layout.radius);
    QPainterPath disc;
    disc.addEllipse(target);
    cover.fillPath(disc, mixed(palette.glow, palette.base, 0.5));
    // A brush, not a clip: the circle's edge stays smooth. Scaled beforehand, or a large photo would flicker
    // with detail that a plain bilinear look-up skips over.
    const int side = std::min(picture.width(), picture.height());
    const int top = static_cast<int>((picture.height() - side) * upperShare);
    const int scaledSide = static_cast<int>(std::ceil(target.width()));
    const QImage square =
        picture.copy((picture.width() - side) / 2, top, side, side)
            .scaled(scaledSide, scaledSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QBrush brush{square};
    brush.setTransform(QTransform::fromTranslate(target.left(), target.top()));
    cover.fillPath(disc, brush);
    QRadialGradient shade{layout.focus, layout.radius};
    shade.setColorAt(0.72, faded(palette.deep, 0));
    shade.setColorAt(1, faded(palette.deep, 0.45));
    cover.fillPath(disc, shade);
}

void paintRing(QPainter &cover, const CoverLayout &layout, const QBrush &ring)
{
    const double width = ringShare * layout.radius;
    cover.setBrush(Qt::NoBrush);
    cover.setPen(QPen{Qt::white, width * 0.9});
    cover.drawEllipse(circle(layout.focus, layout.radius + width * 0.4));
    cover.setPen(QPen{ring, width * 1.1});
    cover.drawEllipse(circle(layout.focus, layout.radius + width * 1.3));
    // A thin broken circle outside.
    cover.setPen(QPen{ring, width * 0.35, Qt::SolidLine, Qt::RoundCap});
    for (const auto &[begin, span] : {std::pair{20, 75}, {125, 30}, {195, 80}, {300, 42}}) {
        cover.drawArc(circle(layout.focus, layout.radius * 1.105), begin * 16, span * 16);
    }
}

/// Sets the presenter's picture into its circle: a shadow below, a glowing ring around.
void paintPresenter(QPainter &cover, QSize size, const QImage &picture, const CoverLayout &layout,
                    const Palette &palette)
{
    QConicalGradient ring{layout.focus, 60};
    ring.setStops({{0, palette.accent},
                   {0.25, mixed(palette.accent, Qt::white, 0.65)},
                   {0.5, palette.accent2},
                   {0.75, mixed(palette.accent2, Qt::white, 0.5)},
                   {1, palette.accent}});
    paintSurroundings(cover, size, layout, ring);
    paintPicture(cover, picture, layout, palette);
    paintRing(cover, layout, ring);
}

/// A slanted badge with the presenter's expression at the lower right of the circle.
void paintBadge(QPainter &cover, QSize size, const CoverLayout &layout, const Palette &palette,
                const QString &expression)
{
    constexpr qsizetype mostSigns = 8;
    const QString text = titleFont::drawable(expression).simplified().left(mostSigns);
    if (text.isEmpty()) {
        return;
    }
    const double height = 96 * layout.unit;
    const double width = titleFont::widthPerPixel(text) * 0.56 * height + height;
    const QRectF box{-width / 2, -height / 2, width, height};
    const double corner = 0.72 * layout.radius;
    // Long words must not run off the cover.
    const double rightmost = size.width() - width / 2 - 30 * layout.unit;
    cover.save();
    cover.translate(std::min(layout.focus.x() + corner, rightmost), layout.focus.y() + corner);
    cover.rotate(-6);
    QLinearGradient fill{box.topLeft(), box.topRight()};
    fill.setColorAt(0, mixed(palette.accent, Qt::black, 0.08));
    fill.setColorAt(1, mixed(palette.accent2, Qt::black, 0.08));
    cover.setBrush(fill);
    cover.setPen(QPen{Qt::white, 0.06 * height});
    cover.drawRoundedRect(box, height / 2, height / 2);
    QPainterPath words = titleFont::outline(text, 0.56 * height);
    words.translate(-words.boundingRect().center());
    const QColor ink = faded(mixed(palette.deep, Qt::black, 0.4), 0.8);
    cover.strokePath(words, QPen{ink, 0.09 * height, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    cover.fillPath(words, Qt::white);
    cover.restore();
}

/// The small note in the lower right corner that says the picture was made by a machine.
void paintWatermark(QPainter &cover, QSize size, const CoverLayout &layout)
{
    QPainterPath words = titleFont::outline(u"AI 生成"_s, 24 * layout.unit);
    const QPointF corner = QRectF{QPointF{}, size}.bottomRight() - QPointF{28, 24} * layout.unit;
    words.translate(corner - words.boundingRect().bottomRight());
    cover.strokePath(words, QPen{faded(Qt::black, 0.4), 4 * layout.unit});
    cover.fillPath(words, faded(Qt::white, 0.75));
}

} // namespace

QImage compose(const PictureRequest &request)
{
    const PromptParts prompt = PromptParts::of(request.prompt);
    const bool hasPresenter = !request.images.isEmpty();
    CoverLayout layout = CoverLayout::of(request.size, true, hasPresenter);
    const TitleLayout title = TitleLayout::of(prompt.title, layout.title.size(), layout.mostLines);
    if (title.lines.isEmpty()) {
        layout = CoverLayout::of(request.size, false, hasPresenter);
    }
    const Backdrop &backdrop = Backdrop::forPrompt(prompt);
    const Palette palette =
        request.images.size() < 2 ? backdrop.palette : backdrop.palette.accentedBy(request.images[1]);

    QImage image{request.size, QImage::Format_RGB32};
    QPainter cover{&image};
    cover.setRenderHint(QPainter::Antialiasing);
    backdrop.paint(cover, request.size, layout.focus, palette);
    paintVignette(cover, request.size, palette);
    titlePainter::paint(cover, request.size, title, layout, palette);
    if (hasPresenter) {
        paintPresenter(cover, request.size, request.images.first(), layout, palette);
        paintBadge(cover, request.size, layout, palette, prompt.expression);
    }
    if (request.watermark) {
        paintWatermark(cover, request.size, layout);
    }
    return image;
}

} // namespace quilmora::localservice::coverComposer
