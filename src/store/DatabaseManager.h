#pragma once

#include "model/HistoryRecord.h"
#include "model/VolcengineConfig.h"
#include "store/SqliteConnection.h"

#include <QList>
#include <QString>

namespace quilmora {

/// Everything that is kept across runs: the settings of the image service and the history of covers, in one
/// SQLite file. No operation reports a failure: reads fall back to defaults or an empty list, failed writes
/// are printed to standard output. To be used from the main thread.
class DatabaseManager final
{
public:
    /// Opens "quilmora.db" in `folder`, creating both if missing, brings a history of an older version to the
    /// present layout, and adds a row for each file in `covers`, the folder of the covers, that has none.
    /// Folder and file of the database are made the owner's alone: the settings hold the key in plain text.
    DatabaseManager(const QString &folder, const QString &covers);
    Q_DISABLE_COPY_MOVE(DatabaseManager)
    ~DatabaseManager() = default;

    /// The one instance of the running application, in the user's application-support folder and with the
    /// user's covers; opened on first use.
    static DatabaseManager &shared();

    /// Stores the settings exactly as given.
    void saveConfig(const QString &apiURL, const QString &apiKey, const QString &modelID);

    /// The stored settings, with the defaults for an empty address or model.
    VolcengineConfig getConfig();

    /// Adds one cover, stamped with the present moment.
    void insertHistory(const QString &prompt, const QString &imagePath, const QString &modelID);

    /// All covers, newest first.
    QList<HistoryRecord> fetchAllHistory();

    /// Removes the row; the picture file stays, and a cover in the folder of the covers comes back at the
    /// next start. An unknown id changes nothing.
    void deleteHistory(qint64 id);

private:
    void createTables();
    void ensureDefaultConfig();

    SqliteConnection m_database;
};

} // namespace quilmora
