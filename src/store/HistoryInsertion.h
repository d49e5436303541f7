#pragma once

#include "platform/Timestamp.h"

#include <QString>

namespace quilmora {

/// The statement that adds one cover to the history, made at `createdAt`.
QString historyInsertion(const QString &prompt, const QString &imagePath, Timestamp createdAt,
                         const QString &modelID);

} // namespace quilmora
