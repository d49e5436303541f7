#include "local_service/cover/TitlePainter.h"

#include "local_service/cover/SoftLayer.h"
#include "local_service/cover/TitleFont.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

namespace quilmora::localservice::titlePainter {
namespace {

// Lengths are font sizes.
constexpr double ascent = 0.98;       ///< From the top of a line to its base line.
constexpr double lean = -0.055;       ///< Shear: the words lean forward a little.
constexpr double tilt = -2.2;         ///< Degrees, of a title beside the presenter.
constexpr double outlineWidth = 0.17; ///< Both sides together.
constexpr double emboldening = 0.028;
constexpr double depth = 0.055; ///< How far the letters stand out.

struct Lettering {
    QPainterPath path; ///< In cover pixels.
    double pixelSize;
    bool yellow;
};

QList<Lettering> lettered(const TitleLayout &title, const CoverLayout &layout)
{
    QList<Lettering> result;
    double top = -title.height() / 2;
    for (const TitleLayout::Line &line : title.lines) {
        const double width = layout.beside ? layout.title.width() : line.width * line.pixelSize;
        QTransform place = QTransform::fromTranslate(layout.title.center().x(), layout.title.center().y());
        place.rotate(layout.beside ? tilt : 0);
        place.translate(-width / 2, top + ascent * line.pixelSize);
        place.shear(lean, 0);
        result.append({place.map(titleFont::outline(line.text, line.pixelSize)), line.pixelSize,
                       line.accented || title.lines.size() == 1});
        top += line.pixelSize * TitleLayout::lineHeight;
    }
    return result;
}

QPen roundPen(const QBrush &brush, double width)
{
    return {brush, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paintFace(QPainter &cover, const Lettering &line, const Palette &palette)
{
    const QRectF bounds = line.path.boundingRect();
    QLinearGradient fill{bounds.topLeft(), bounds.bottomLeft()};
    fill.setColorAt(0, line.yellow ? QColor{0xFF, 0xF2, 0x5C} : QColor{Qt::white});
    fill.setColorAt(0.5, line.yellow ? QColor{0xFF, 0xDE, 0x44} : QColor{Qt::white});
    fill.setColorAt(1, line.yellow ? QColor{0xFF, 0xA8, 0x00} : mixed(Qt::white, palette.glow, 0.28));
    cover.strokePath(line.path, roundPen(fill, emboldening * line.pixelSize));
    cover.fillPath(line.path, fill);
}

} // namespace

void paint(QPainter &cover, QSize size, const TitleLayout &title, const CoverLayout &layout,
           const Palette &palette)
{
    const QList<Lettering> lines = lettered(title, layout);
    const QColor dark = mixed(palette.deep, Qt::black, 0.55);
    const auto paintSoftly = [&](const QColor &color, double width, double softness) {
        softLayer::put(cover, size, softness * layout.unit, [&](QPainter &layer) {
            for (const Lettering &line : lines) {
                layer.strokePath(line.path.translated(0, 0.06 * line.pixelSize),
                                 roundPen(color, width * line.pixelSize));
            }
        });
    };
    paintSoftly(faded(dark, 0.45), 0.60, 60);
    paintSoftly(faded(Qt::black, 0.75), 0.22, 14);
    // All outlines first, or a line's outline would cut into the line above.
    constexpr int layers = 4;
    for (const Lettering &line : lines) {
        for (int i = layers; i >= 0; --i) {
            const double shift = depth * line.pixelSize * i / layers;
            cover.strokePath(line.path.translated(shift * 0.55, shift),
                             roundPen(dark, outlineWidth * line.pixelSize));
        }
    }
    for (const Lettering &line : lines) {
        paintFace(cover, line, palette);
    }
}

} // namespace quilmora::localservice::titlePainter
