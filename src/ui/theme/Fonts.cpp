#include "ui/theme/Fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// The first installed simplified Chinese family. Without one Qt falls back to any Han font, often with
/// Japanese glyphs.
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
    // The fallback of Qt where no font is configured, which does not look good beside Chinese.
    const bool isFallback = system == u"DejaVu Sans"_s;
    font.setFamilies(isFallback ? QStringList{chinese, system} : QStringList{system, chinese});
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
    // No character is higher.
    return rowHeight / 2 - QFontMetricsF{font}.tightBoundingRect(u"国"_s).center().y();
}

} // namespace quilmora
