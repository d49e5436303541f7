#include "model/CoverInputs.h"

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

bool Emotion::isCustom() const { return name == u"自定义..."_s; }

const QList<Emotion> &Emotion::presets()
{
    static const QList<Emotion> emotions{
        {u"震惊"_s}, {u"惊喜"_s}, {u"灿烂微笑"_s}, {u"大笑"_s}, {u"兴奋"_s}, {u"胜利"_s},
        {u"调皮"_s}, {u"坚定"_s}, {u"怀疑"_s},     {u"困惑"_s}, {u"无语"_s}, {u"自定义..."_s},
    };
    return emotions;
}

size_t qHash(const Emotion &emotion, size_t seed) noexcept { return qHash(emotion.name, seed); }

} // namespace quilmora
