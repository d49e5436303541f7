#include "local_service/cover/TitleFont.h"

#include <QFontMetricsF>
#include <QTransform>

using namespace Qt::StringLiterals;

namespace quilmora::localservice::titleFont {
namespace {

/// Everything is measured and drawn at this size and scaled from there.
constexpr int masterSize = 256;

QFont masterFont()
{
    QFont font;
    font.setFamilies({u"Noto Sans CJK SC"_s, u"Noto Sans SC"_s, u"Source Han Sans SC"_s, u"PingFang SC"_s,
                      u"WenQuanYi Zen Hei"_s, u"sans-serif"_s});
    font.setWeight(QFont::Black);
    font.setPixelSize(masterSize);
    // Without hinting lengths grow with the size.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

bool hasOutline(char32_t sign)
{
    const bool emoji = (sign > 0xFFFF && QChar::script(sign) != QChar::Script_Han) ||
                       (sign >= 0x2190 && sign < 0x3000 && QChar::category(sign) == QChar::Symbol_Other) ||
                       (sign >= 0xFE00 && sign <= 0xFE0F);
    return !emoji && QChar::isPrint(sign);
}

} // namespace

QString drawable(const QString &text)
{
    QString result;
    const QList<uint> signs = text.toUcs4();
    for (const char32_t sign : signs) {
        if (sign == U'\n' || sign == U'\r' || sign == 0x2028 || sign == 0x2029) {
            result += u'\n';
        } else if (QChar::isSpace(sign) || hasOutline(sign)) {
            result += QString::fromUcs4(&sign, 1);
        }
    }
    return result;
}

double widthPerPixel(const QString &text)
{
    return QFontMetricsF{masterFont()}.horizontalAdvance(text) / masterSize;
}

QPainterPath outline(const QString &text, double pixelSize)
{
    QPainterPath path;
    path.addText(0, 0, masterFont(), text);
    // Strokes of one sign may overlap.
    path.setFillRule(Qt::WindingFill);
    return QTransform::fromScale(pixelSize / masterSize, pixelSize / masterSize).map(path);
}

} // namespace quilmora::localservice::titleFont
