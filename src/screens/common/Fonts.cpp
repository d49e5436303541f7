#include "screens/common/Fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// The first of the known simplified Chinese families that is installed. Without it a Latin system font is
/// completed from any Han font, often with Japanese shapes.
QString chineseFamily()
{
    const QStringList installed = QFontDatabase::families();
    for (const QString &family : {u"Noto Sans CJK SC"_s, u"Noto Sans SC"_s, u"Source Han Sans SC"_s,
                                  u"Source Han Sans CN"_s, u"WenQuanYi Micro Hei"_s}) {
        if (installed.contains(family)) {
            return family;
        }
    }
    return {};
}

} // namespace

void installApplicationFont()
{
#ifndef Q_OS_MACOS
    const QString chinese = chineseFamily();
    if (chinese.isEmpty()) {
        if (QFontDatabase::families(QFontDatabase::SimplifiedChinese).isEmpty()) {
            qWarning("没有中文字体，文字会显示为方框。请安装一种，例如 fonts-noto-cjk。");
        }
        return;
    }
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    const QString system = QFontInfo{font}.family();
    // Where nobody chose a font Qt falls back to this one, which no Chinese family sits well beside.
    const bool unchosen = system == u"DejaVu Sans"_s;
    font.setFamilies(unchosen ? QStringList{chinese, system} : QStringList{system, chinese});
    QApplication::setFont(font);
#endif
}

QFont systemFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

double baselineInRow(const QFont &font, double rowHeight)
{
    // This one is as high as any.
    return rowHeight / 2 - QFontMetricsF{font}.tightBoundingRect(u"国"_s).center().y();
}

} // namespace quilmora
