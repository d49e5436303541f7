#pragma once

#include "store/SqliteConnection.h"

#include <QString>

/// Rows of the history as the application stores them, made without it.
namespace quilmora::test::historyRows {

using namespace Qt::StringLiterals;

/// The statement that adds one cover, made `createdAt` seconds after 1970-01-01 UTC.
inline QString insertion(const QString &prompt, const QString &imagePath, double createdAt,
                         const QString &modelID)
{
    return u"INSERT INTO history (prompt, image_path, created_at, model_id) VALUES ("_s +
           SqliteConnection::quoted(prompt) + u", "_s + SqliteConnection::quoted(imagePath) + u", "_s +
           shortestDecimal(createdAt) + u", "_s + SqliteConnection::quoted(modelID) + u");"_s;
}

} // namespace quilmora::test::historyRows
