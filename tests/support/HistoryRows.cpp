#include "support/HistoryRows.h"

#include "platform/NumberFormat.h"
#include "store/SqliteConnection.h"

using namespace Qt::StringLiterals;

namespace quilmora::test::historyRows {

QString insertion(const QString &prompt, const QString &imagePath, double createdAt, const QString &modelID)
{
    return u"INSERT INTO history (prompt, image_path, created_at, model_id) VALUES ("_s +
           SqliteConnection::quoted(prompt) + u", "_s + SqliteConnection::quoted(imagePath) + u", "_s +
           shortestDecimal(createdAt) + u", "_s + SqliteConnection::quoted(modelID) + u");"_s;
}

} // namespace quilmora::test::historyRows
