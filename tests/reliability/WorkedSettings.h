#pragma once

#include "model/VolcengineConfig.h"

#include <QString>
#include <QStringList>

namespace quilmora::test {

/// The key and the models that the service takes.
inline const QString workedKey = QStringLiteral("a key");
inline const QStringList workedModels{QStringLiteral("model-0"), QStringLiteral("model-1")};

/// Settings that carry a number: in the address, and a part of it in the model. The service takes them all.
inline VolcengineConfig workedSettings(const QString &endpoint, int number)
{
    return {endpoint + QStringLiteral("?save=") + QString::number(number), workedKey,
            workedModels.at(number % workedModels.size())};
}

} // namespace quilmora::test
