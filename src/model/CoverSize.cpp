#include "model/CoverSize.h"

#include <QHashFunctions>

using namespace Qt::StringLiterals;

namespace quilmora {

const QList<CoverSize> &CoverSize::presets()
{
    static const QList<CoverSize> sizes{
        {u"YouTube"_s, u"16:9"_s, u"tv"_s, 2848, 1600},
        {u"经典"_s, u"4:3"_s, u"macwindow"_s, 2304, 1728},
        {u"小红书"_s, u"3:4"_s, u"iphone"_s, 1728, 2304},
        {u"抖音 / TikTok"_s, u"9:16"_s, u"iphone.gen3"_s, 1600, 2848},
    };
    return sizes;
}

size_t qHash(const CoverSize &size, size_t seed) noexcept
{
    return qHashMulti(seed, size.name, size.ratio, size.iconName, size.width, size.height);
}

} // namespace quilmora
