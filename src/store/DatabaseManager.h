#pragma once

#include "model/HistoryRecord.h"
#include "model/VolcengineConfig.h"
#include "store/SqliteConnection.h"

#include <QList>
#include <QString>

namespace quilmora {

/// The settings of the image service and the history of covers, in one SQLite file. When they fail, reads
/// give defaults or an empty list, and writes are printed to standard output. Main thread only.
class DatabaseManager final
{
public:
    /// Opens "quilmora.db" in `folder`, creating both if missing, both accessible to their owner alone;
    /// migrates the history and adds a row for each file in `covers`, the folder of the covers, that has
    /// none.
    DatabaseManager(const QString &folder, const QString &covers);

    /// The application's instance, in the user's application-support folder; opened on first use.
    static DatabaseManager &shared();

    void saveConfig(const QString &apiURL, const QString &apiKey, const QString &modelID);

    /// The stored settings, with the defaults for an empty address or model.
    VolcengineConfig getConfig();

    /// Adds one cover with the current time.
    void insertHistory(const QString &prompt, const QString &imagePath, const QString &modelID);

    /// All covers, newest first.
    QList<HistoryRecord> fetchAllHistory();

    /// Removes the row, not the picture: the next start adds a cover in the folder of the covers again.
    void deleteHistory(qint64 id);

private:
    void createTables();
    void ensureDefaultConfig();

    SqliteConnection m_database;
};

} // namespace quilmora
