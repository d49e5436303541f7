#include "local_service/cover/TitleFont.h"

#include <QFontMetricsF>
#include <QTransform>

using namespace Qt::StringLiterals;

namespace quilmora::titleFont
{
namespace
{

/// Everything is measured and drawn at this size and scaled from there.
constexpr int masterSize = 256;

} // namespace

QFont make(int pixelSize)
{
    QFont font;
    font.setFamilies({u"Noto Sans CJK SC"_s, u"Noto Sans SC"_s, u"Source Han Sans SC"_s, u"PingFang SC"_s,
                      u"WenQuanYi Zen Hei"_s, u"sans-serif"_s});
    font.setWeight(QFont::Black);
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

double widthPerPixel(const QString &text)
{
    return QFontMetricsF{make(masterSize)}.horizontalAdvance(text) / masterSize;
}

QPainterPath outline(const QString &text, double pixelSize)
{
    QPainterPath path;
    path.addText(0, 0, make(masterSize), text);
    // Strokes of one sign may overlap.
    path.setFillRule(Qt::WindingFill);
    return QTransform::fromScale(pixelSize / masterSize, pixelSize / masterSize).map(path);
}

} // namespace quilmora::titleFont
