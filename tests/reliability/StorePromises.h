#pragma once

#include "platform/FileStamp.h"
#include "support/DatabaseFile.h"

#include <QByteArrayList>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace quilmora::test
{

/// What the store promises, held against its files by SQLite and the decoders alone. It remembers what it has
/// seen: a row or a file that was there once has to stay as it was.
class StorePromises final
{
public:
    /// In the home folder that this process has.
    StorePromises();

    /// Takes to heart what a maker has said: covers that were shown and settings that were saved have to be
    /// there.
    void believe(const QByteArrayList &lines);

    /// Looks at everything, once the store was opened and closed again. Gives what is broken, a text each.
    QStringList broken();

    int covers() const { return static_cast<int>(rows.size()); }
    int shown() const { return shownCount; }
    int adopted() const { return adoptedCount; }   ///< Whole covers whose row the start added.
    int cutShort() const { return cutShortCount; } ///< Files that a kill cut short, shown as the placeholder.
    int replaced() const { return replacedCount; } ///< Covers of the same second and the same random number.

    QString databaseFile() const { return folder + QStringLiteral("/quilmora.db"); }
    const QString &coversFolder() const { return pictures; }

private:
    using Row = databaseFile::Row;

    void checkFiles();
    void checkRows();
    void checkRow(const Row &row);
    void checkShown();
    void checkSettings();
    void complain(const QString &text) { complaints.append(text); }

    const QString folder;
    const QString pictures;
    QMap<qint64, Row> rows;                      ///< By id.
    QHash<QString, QString> digests;             ///< Of the pictures in them.
    QHash<QString, FileStamp> stamps;            ///< Of the files that were looked into, by path.
    QHash<QByteArray, QByteArray> digestsToFind; ///< By title: what was shown since the last look.
    int lastSaving = 0;
    int lastSaved = 0;
    int shownCount = 0;
    int adoptedCount = 0;
    int cutShortCount = 0;
    int replacedCount = 0;
    QStringList complaints;
};

} // namespace quilmora::test
