#include "local_service/cover/TitlePainter.h"

#include "local_service/cover/SoftLayer.h"
#include "local_service/cover/TitleFont.h"

#include <QLinearGradient>
#include <QPainter>
#include <QTransform>

#include <algorithm>

namespace quilmora
{
namespace
{

/// From the top of a line to its base line, in font sizes.
constexpr double ascent = 0.98;
constexpr double lean = -0.055;       ///< Shear: the words lean forward a little.
constexpr double tilt = -2.2;         ///< Degrees, of a title beside the presenter.
constexpr double outlineWidth = 0.17; ///< In font sizes, both sides together.
constexpr double emboldening = 0.028;
constexpr double depth = 0.055; ///< How far the letters stand out, in font sizes.

const QColor yellowTop{0xFF, 0xF2, 0x5C};
const QColor yellowBottom{0xFF, 0xA8, 0x00};

} // namespace

TitlePainter::TitlePainter(const TitleLayout &title, const CoverLayout &layout, const ColourPalette &palette)
    : m_layout{layout},
      m_palette{palette}
{
    double top = layout.title.center().y() - title.height() / 2;
    double widest = 0;
    for (const TitleLayout::Line &line : title.lines()) {
        widest = std::max(widest, line.width);
    }
    for (const TitleLayout::Line &line : title.lines()) {
        const double left = layout.centred ? layout.title.center().x() - line.width / 2 : layout.title.left();
        QTransform place = QTransform::fromTranslate(left, top + ascent * line.pixelSize);
        place.shear(lean, 0);
        QPainterPath path = place.map(titleFont::outline(line.text, line.pixelSize));
        if (layout.sideways) {
            const QPointF pivot{layout.title.left() + widest / 2, layout.title.center().y()};
            QTransform turn = QTransform::fromTranslate(pivot.x(), pivot.y());
            turn.rotate(tilt);
            turn.translate(-pivot.x(), -pivot.y());
            path = turn.map(path);
        }
        m_bounds |= path.boundingRect();
        m_lines.append({path, line.pixelSize, line.accented});
        top += line.pixelSize * TitleLayout::lineHeight;
    }
}

void TitlePainter::paintGround(QPainter &cover, QSize size) const
{
    if (m_lines.isEmpty()) {
        return;
    }
    const QColor dark = mixed(m_palette.deep, Qt::black, 0.45);
    SoftLayer ground{size, 0.0625};
    for (const Lettering &line : m_lines) {
        const QPen pen{faded(dark, 0.62), 0.62 * line.pixelSize, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
        ground.painter().strokePath(line.path, pen);
    }
    ground.putOnto(cover, 90 * m_layout.unit);
}

void TitlePainter::paintWords(QPainter &cover, QSize size) const
{
    if (m_lines.isEmpty()) {
        return;
    }
    cover.save();
    paintShadow(cover, size);
    // Above a presenter the bar would cut through the ring.
    if (m_layout.sideways || m_layout.radius == 0) {
        paintBar(cover);
    }
    // Outlines first, or a line's outline would cut into the line above.
    for (const Lettering &line : m_lines) {
        paintBody(cover, line);
    }
    for (const Lettering &line : m_lines) {
        paintFace(cover, line);
    }
    cover.restore();
}

void TitlePainter::paintShadow(QPainter &cover, QSize size) const
{
    SoftLayer shadow{size, 0.125};
    for (const Lettering &line : m_lines) {
        const double drop = 0.10 * line.pixelSize;
        const QPen pen{faded(Qt::black, 0.85), outlineWidth * line.pixelSize, Qt::SolidLine, Qt::RoundCap,
                       Qt::RoundJoin};
        shadow.painter().strokePath(line.path.translated(drop * 0.6, drop), pen);
    }
    shadow.putOnto(cover, 22 * m_layout.unit);
}

void TitlePainter::paintBody(QPainter &cover, const Lettering &line) const
{
    const QColor dark = mixed(m_palette.deep, Qt::black, 0.55);
    const QPen pen{dark, outlineWidth * line.pixelSize, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
    constexpr int layers = 4;
    for (int i = layers; i >= 0; --i) {
        const double shift = depth * line.pixelSize * i / layers;
        cover.strokePath(line.path.translated(shift * 0.55, shift), pen);
    }
}

void TitlePainter::paintFace(QPainter &cover, const Lettering &line) const
{
    const bool yellow = line.accented || m_lines.size() == 1;
    const QRectF bounds = line.path.boundingRect();
    QLinearGradient fill{bounds.topLeft(), bounds.bottomLeft()};
    if (yellow) {
        fill.setColorAt(0, yellowTop);
        fill.setColorAt(0.45, mixed(yellowTop, yellowBottom, 0.25));
        fill.setColorAt(1, yellowBottom);
    } else {
        fill.setColorAt(0, Qt::white);
        fill.setColorAt(0.55, Qt::white);
        fill.setColorAt(1, mixed(Qt::white, m_palette.glow, 0.28));
    }
    cover.setPen(QPen{fill, emboldening * line.pixelSize, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    cover.setBrush(fill);
    cover.drawPath(line.path);
}

/// A slanted stroke under the words in the accent colours.
void TitlePainter::paintBar(QPainter &cover) const
{
    const double height = 16 * m_layout.unit;
    const double slant = height * 0.9;
    const double y = m_bounds.bottom() + 62 * m_layout.unit;
    const double length = std::min(m_bounds.width(), 340 * m_layout.unit);
    double x = m_layout.centred ? m_bounds.center().x() - length / 2 : m_layout.title.left();
    cover.setPen(Qt::NoPen);
    const auto piece = [&](double width, const QBrush &brush) {
        QPainterPath path{{x + slant, y}};
        path.lineTo(x + slant + width, y);
        path.lineTo(x + width, y + height);
        path.lineTo(x, y + height);
        cover.fillPath(path, brush);
        x += width + height * 0.8;
    };
    QLinearGradient gradient{x, y, x + length, y};
    gradient.setColorAt(0, m_palette.accent);
    gradient.setColorAt(1, m_palette.accent2);
    piece(length * 0.66, gradient);
    piece(length * 0.10, m_palette.accent2);
    piece(length * 0.05, m_palette.accent2);
}

} // namespace quilmora
