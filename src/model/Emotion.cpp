#include "model/Emotion.h"

#include <QHashFunctions>

using namespace Qt::StringLiterals;

namespace quilmora {

bool Emotion::isCustom() const
{
    return name == u"自定义..."_s;
}

const QList<Emotion> &Emotion::presets()
{
    static const QList<Emotion> emotions{
        {u"震惊"_s}, {u"惊喜"_s}, {u"灿烂微笑"_s}, {u"大笑"_s}, {u"兴奋"_s}, {u"胜利"_s},
        {u"调皮"_s}, {u"坚定"_s}, {u"怀疑"_s},     {u"困惑"_s}, {u"无语"_s}, {u"自定义..."_s},
    };
    return emotions;
}

size_t qHash(const Emotion &emotion, size_t seed) noexcept
{
    return qHash(emotion.name, seed);
}

} // namespace quilmora
