#include "store/HistoryInsertion.h"

#include "platform/NumberFormat.h"
#include "store/SqliteConnection.h"

using namespace Qt::StringLiterals;

namespace quilmora {

QString historyInsertion(const QString &prompt, const QString &imagePath, Timestamp createdAt,
                         const QString &modelID)
{
    return u"INSERT INTO history (prompt, image_path, created_at, model_id)\nVALUES ("_s +
           SqliteConnection::quoted(prompt) + u", "_s + SqliteConnection::quoted(imagePath) + u", "_s +
           shortestDecimal(secondsSince1970(createdAt)) + u", "_s + SqliteConnection::quoted(modelID) +
           u");"_s;
}

} // namespace quilmora
