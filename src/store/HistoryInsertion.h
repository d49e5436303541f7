#pragma once

#include "platform/PointInTime.h"

#include <QString>

namespace quilmora
{

/// The statement that adds one cover to the history, made at `createdAt`.
QString historyInsertion(const QString &prompt, const QString &imagePath, PointInTime createdAt,
                         const QString &modelID);

} // namespace quilmora
