#include "local_service/cover/BadgePainter.h"

#include "local_service/cover/TitleFont.h"
#include "local_service/cover/TitleWords.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::badgePainter
{
namespace
{

constexpr qsizetype mostWords = 8;
constexpr double slope = -6; ///< Degrees.

QString shortened(const QString &word)
{
    QString result;
    const QList<TitleWord> words = TitleWord::split(word, mostWords);
    for (const TitleWord &piece : words) {
        result += piece.text;
        if (piece.spaceAfter) {
            result += u' ';
        }
    }
    return result;
}

} // namespace

void paintExpression(QPainter &cover, QSize size, const CoverLayout &layout, const ColourPalette &palette,
                     const QString &word)
{
    const QString text = shortened(word);
    if (text.isEmpty()) {
        return;
    }
    const double height = 96 * layout.unit;
    const double pixelSize = 0.56 * height;
    const double width = titleFont::widthPerPixel(text) * pixelSize + height;
    const QRectF box{-width / 2, -height / 2, width, height};
    // Long words must not run off the cover.
    const double margin = width / 2 + 30 * layout.unit;
    const double x = std::clamp(layout.badge.x(), std::min(margin, 0.5 * size.width()),
                                std::max(size.width() - margin, 0.5 * size.width()));
    cover.save();
    cover.translate(x, layout.badge.y());
    cover.rotate(slope);
    cover.setPen(Qt::NoPen);
    cover.setBrush(faded(Qt::black, 0.35));
    cover.drawRoundedRect(box.translated(0.06 * height, 0.10 * height), height / 2, height / 2);
    QLinearGradient fill{box.topLeft(), box.topRight()};
    fill.setColorAt(0, mixed(palette.accent, Qt::black, 0.08));
    fill.setColorAt(1, mixed(palette.accent2, Qt::black, 0.08));
    cover.setBrush(fill);
    cover.setPen(QPen{Qt::white, 0.06 * height});
    cover.drawRoundedRect(box, height / 2, height / 2);
    QPainterPath words = titleFont::outline(text, pixelSize);
    words.translate(-words.boundingRect().center());
    const QColor ink = mixed(palette.deep, Qt::black, 0.4);
    cover.strokePath(words, QPen{faded(ink, 0.8), 0.09 * height, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    cover.fillPath(words, Qt::white);
    cover.restore();
}

void paintWatermark(QPainter &cover, QSize size, const CoverLayout &layout)
{
    QPainterPath words = titleFont::outline(u"AI 生成"_s, 24 * layout.unit);
    const QRectF bounds = words.boundingRect();
    words.translate(size.width() - bounds.right() - 28 * layout.unit,
                    size.height() - bounds.bottom() - 24 * layout.unit);
    cover.strokePath(words, QPen{faded(Qt::black, 0.4), 4 * layout.unit});
    cover.fillPath(words, faded(Qt::white, 0.75));
}

} // namespace quilmora::badgePainter
