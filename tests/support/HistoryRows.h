#pragma once

#include <QString>

/// Rows of the history as the application stores them, made without it.
namespace quilmora::test::historyRows {

/// The statement that adds one cover, made `createdAt` seconds after 1970-01-01 UTC.
QString insertion(const QString &prompt, const QString &imagePath, double createdAt, const QString &modelID);

} // namespace quilmora::test::historyRows
