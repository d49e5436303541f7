#pragma once

#include <QRandomGenerator>
#include <QtGlobal>

namespace quilmora::test {

/// How often a run does what it does: QUILMORA_RUN_COUNT, or `usual` without it.
inline int runCount(int usual)
{
    bool isNumber = false;
    const int count = qEnvironmentVariableIntValue("QUILMORA_RUN_COUNT", &isNumber);
    return isNumber && count > 0 ? count : usual;
}

/// Where its random numbers begin: QUILMORA_RUN_SEED, or anywhere without it. To be printed.
inline quint32 runSeed()
{
    bool isNumber = false;
    const int seed = qEnvironmentVariableIntValue("QUILMORA_RUN_SEED", &isNumber);
    return isNumber ? static_cast<quint32>(seed) : QRandomGenerator::system()->generate() & 0x7fffffffU;
}

} // namespace quilmora::test
