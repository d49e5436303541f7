#include "reliability/StoreInvariants.h"

#include "imaging/ImageCodec.h"
#include "imaging/IncrementalDecoder.h"
#include "platform/Files.h"
#include "reliability/PixelDigest.h"
#include "reliability/WorkedSettings.h"
#include "store/ImageStorageService.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

enum Column { id, prompt, path, createdAt, model };

const QByteArray adoptedPrompt{"(历史图片，已自动补录)"};

QString fileOf(const databaseFile::Row &row)
{
    return userFolders::expandTilde(QString::fromUtf8(row.at(Column::path)));
}

bool endsLikeAPng(const QString &file)
{
    QFile bytes{file};
    const QByteArray end = QByteArray::fromHex("0000000049454e44ae426082");
    return bytes.open(QIODevice::ReadOnly) && bytes.readAll().endsWith(end);
}

/// Whether this is a journal into which nothing was written yet: no change was begun, and the next one takes
/// its place.
bool isEmptyJournal(const QString &file)
{
    QFile journal{file};
    char first = '\0';
    return file.endsWith(u"-journal"_s) && journal.open(QIODevice::ReadOnly) &&
           (!journal.getChar(&first) || first == '\0');
}

/// Whether a tile of the history and the preview both show the placeholder.
bool showsPlaceholder(const QString &file)
{
    IncrementalDecoder tile{file, {200, 200}};
    while (!tile.advance(QDeadlineTimer{QDeadlineTimer::Forever})) {
    }
    return tile.image().isNull() && imageCodec::decodeFile(file).isNull();
}

} // namespace

StoreInvariants::StoreInvariants()
    : m_folder{userFolders::applicationSupport() + u"/Quilmora"_s},
      m_pictures{coversFolder::path()}
{
}

void StoreInvariants::expect(const QByteArrayList &lines)
{
    // Each maker counts from one.
    bool isFirst = true;
    for (const QByteArray &line : lines) {
        const QByteArrayList words = line.split(' ');
        if (words.constFirst() == "shown") {
            m_digestsToFind.insert(words.at(1), words.value(2));
        } else if (words.constFirst() == "saving") {
            // Before the first one is saved the former run's settings may still stand.
            m_lastSaving = words.at(1).toInt();
            m_lastSaved = isFirst ? m_lastSaved : m_lastSaving - 1;
            isFirst = false;
        } else if (words.constFirst() == "saved") {
            m_lastSaved = words.at(1).toInt();
        } else if (words.constFirst() != "started") {
            complain(u"It said: "_s + QString::fromUtf8(line));
        }
    }
}

QStringList StoreInvariants::violations()
{
    if (databaseFile::value(databaseFile(), "PRAGMA integrity_check") != "ok") {
        complain(u"The database is damaged"_s);
    }
    checkRows();
    checkFiles();
    checkShown();
    checkSettings();
    return std::exchange(m_complaints, {});
}

void StoreInvariants::checkRows()
{
    const auto all = databaseFile::run(
        databaseFile(), "SELECT id, prompt, image_path, created_at, model_id FROM history ORDER BY id");
    QMap<qint64, Row> present;
    for (const Row &row : all) {
        present.insert(row.at(Column::id).toLongLong(), row);
    }
    for (auto row = m_rows.cbegin(); row != m_rows.cend(); ++row) {
        if (present.value(row.key()) != row.value()) {
            complain(u"Row %1 is gone or changed"_s.arg(row.key()));
        }
    }
    for (auto row = present.cbegin(); row != present.cend(); ++row) {
        if (!m_rows.contains(row.key())) {
            checkRow(row.value());
        }
    }
    m_rows = present;
}

void StoreInvariants::checkRow(const Row &row)
{
    const QString file = fileOf(row);
    const QImage picture = endsLikeAPng(file) ? imageCodec::decodeFile(file) : QImage{};
    const bool isWhole = !picture.isNull();
    m_digests.insert(file, pixelDigest(picture));
    const bool isAdopted = row.at(Column::prompt) == adoptedPrompt;
    if (!isAdopted && !isWhole) {
        complain(u"No whole picture for "_s + QString::fromUtf8(row.join('|')));
    }
    if (isAdopted && !isWhole && !showsPlaceholder(file)) {
        complain(u"Neither whole nor a placeholder: "_s + file);
    }
    m_adoptedCount += isAdopted && isWhole ? 1 : 0;
    m_cutShortCount += isAdopted && !isWhole ? 1 : 0;
    if (const auto stamp = fileFingerprint(file)) {
        m_stamps.insert(file, *stamp);
    }
}

void StoreInvariants::checkFiles()
{
    for (const QFileInfo &entry : QDir{m_folder}.entryInfoList(QDir::Files | QDir::Hidden)) {
        if (entry.filePath() != databaseFile() && !isEmptyJournal(entry.filePath())) {
            complain(u"Beside the database: "_s + entry.fileName());
        }
    }
    m_replacedCount = 0;
    QHash<QString, int> rowsOfFile;
    for (const Row &row : std::as_const(m_rows)) {
        ++rowsOfFile[fileOf(row)];
    }
    for (const QFileInfo &entry : QDir{m_pictures}.entryInfoList(QDir::Files | QDir::Hidden)) {
        const QString file = entry.filePath();
        const int count = rowsOfFile.take(file);
        if (count == 0) {
            complain(u"No row for "_s + file);
        }
        // The same second and the same random number: the later cover takes the place of the earlier one.
        m_replacedCount += std::max(0, count - 1);
        if (const auto stamp = fileFingerprint(file);
            count == 1 && (!stamp || m_stamps.value(file) != *stamp)) {
            complain(u"Changed: "_s + file);
        }
    }
    for (auto missing = rowsOfFile.cbegin(); missing != rowsOfFile.cend(); ++missing) {
        complain(u"No file "_s + missing.key());
    }
}

void StoreInvariants::checkShown()
{
    for (auto cover = m_digestsToFind.cbegin(); cover != m_digestsToFind.cend(); ++cover) {
        int found = 0;
        bool isTheOne = false;
        for (const Row &row : std::as_const(m_rows)) {
            if (row.at(Column::prompt).contains(QByteArray{"「" + cover.key() + "」"})) {
                ++found;
                isTheOne = cover.value().isEmpty() ||
                           m_digests.value(fileOf(row)) == QString::fromLatin1(cover.value());
            }
        }
        if (found != 1) {
            complain(u"%1 rows for the shown cover %2"_s.arg(found).arg(QString::fromUtf8(cover.key())));
        } else if (!isTheOne && m_replacedCount == 0) {
            complain(u"Another picture than the one shown: "_s + QString::fromUtf8(cover.key()));
        }
        ++m_shownCount;
    }
    m_digestsToFind.clear();
}

void StoreInvariants::checkSettings()
{
    const auto settings =
        databaseFile::run(databaseFile(), "SELECT api_url, api_key, model_id FROM volc_config");
    if (settings.size() != 1) {
        complain(u"%1 rows of settings"_s.arg(settings.size()));
        return;
    }
    const int number = settings.constFirst().at(0).split('=').constLast().toInt();
    const int former = m_lastSaved;
    const bool isNew = number == m_lastSaved || number == m_lastSaving;
    m_lastSaved = number;
    m_lastSaving = number;
    const auto expected =
        workedSettings(QString::fromUtf8(settings.constFirst().at(0).split('?').constFirst()), number);
    if (!isNew || (number > 0 && (settings.constFirst().at(1) != expected.apiKey.toUtf8() ||
                                  settings.constFirst().at(2) != expected.modelID.toUtf8()))) {
        complain(u"Settings %1 where %2 were saved: "_s.arg(number).arg(former) +
                 QString::fromUtf8(settings.constFirst().join('|')));
    }
}

} // namespace quilmora::test
