#pragma once

#include "platform/Files.h"
#include "support/DatabaseFile.h"

#include <QByteArrayList>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace quilmora::test {

/// What the store invariants, compared with its files by SQLite and the decoders alone. It remembers what it
/// has seen: a row or a file that was there once has to stay as it was.
class StoreInvariants final
{
public:
    /// In the home folder that this process has.
    StoreInvariants();

    /// Takes to heart what a maker has said: covers that were shown and settings that were saved have to be
    /// there.
    void expect(const QByteArrayList &lines);

    /// Looks at everything, once the store was opened and closed again. Gives what is broken, a text each.
    QStringList violations();

    int covers() const { return static_cast<int>(m_rows.size()); }
    int shown() const { return m_shownCount; }
    /// Whole covers whose row the start added.
    int adopted() const { return m_adoptedCount; }
    /// Files that a kill truncated, shown as the placeholder.
    int cutShort() const { return m_cutShortCount; }
    /// Covers of the same second and the same random number.
    int replaced() const { return m_replacedCount; }

    QString databaseFile() const { return m_folder + QStringLiteral("/quilmora.db"); }
    const QString &coversFolder() const { return m_pictures; }

private:
    using Row = databaseFile::Row;

    void checkFiles();
    void checkRows();
    void checkRow(const Row &row);
    void checkShown();
    void checkSettings();
    void complain(const QString &text) { m_complaints.append(text); }

    const QString m_folder;
    const QString m_pictures;
    QMap<qint64, Row> m_rows;                      ///< By id.
    QHash<QString, QString> m_digests;             ///< Of the pictures in them.
    QHash<QString, FileFingerprint> m_stamps;      ///< Of the files that were looked into, by path.
    QHash<QByteArray, QByteArray> m_digestsToFind; ///< By title: what was shown since the last look.
    int m_lastSaving = 0;
    int m_lastSaved = 0;
    int m_shownCount = 0;
    int m_adoptedCount = 0;
    int m_cutShortCount = 0;
    int m_replacedCount = 0;
    QStringList m_complaints;
};

} // namespace quilmora::test
