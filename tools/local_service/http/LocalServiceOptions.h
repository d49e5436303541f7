#pragma once

#include "model/VolcengineConfig.h"

#include <QString>
#include <QStringList>

#include <chrono>

namespace quilmora
{

/// How a local image service is to behave.
struct LocalServiceOptions {
    quint16 port = 0; ///< On 127.0.0.1; 0 takes any free one.
    QString key = QStringLiteral("local-demo-key");
    std::chrono::milliseconds delay{1500}; ///< The least time from a good request to its answer.
    QStringList models{VolcengineConfig::defaultModelID()};
};

} // namespace quilmora
