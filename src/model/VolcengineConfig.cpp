#include "model/VolcengineConfig.h"

using namespace Qt::StringLiterals;

namespace quilmora {

const QString &VolcengineConfig::defaultURL()
{
    static const QString url = u"https://ark.cn-beijing.volces.com/api/v3/images/generations"_s;
    return url;
}

const QString &VolcengineConfig::defaultModelID()
{
    static const QString model = u"doubao-seedream-4-0-250828"_s;
    return model;
}

} // namespace quilmora
