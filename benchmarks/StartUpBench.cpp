#include "StartUpBench.h"

#include "Report.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "store/SqliteConnection.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

/// What the store may take longer to open with that many covers than with none.
constexpr double extraMilliseconds = 50;

QString coverName(int number) { return u"cover_20250302_140327_%1.png"_s.arg(number); }

void addFiles(const QString &covers, int count)
{
    QDir{}.mkpath(covers);
    for (int number = 0; number < count; ++number) {
        QFile file{covers + u'/' + coverName(number)};
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("Cannot write a cover");
        }
    }
}

/// In one transaction: the store itself would take a write to the disk for each.
void addRows(const QString &database, int count)
{
    SqliteConnection connection{database};
    connection.execute(u"BEGIN;"_s);
    for (int number = 0; number < count; ++number) {
        connection.execute(
            u"INSERT INTO history (prompt, image_path, created_at) VALUES ('%1', '%2', %3.5);"_s
                .arg(QString{300, u'字'}, coversFolder::storedPath(coverName(number)))
                .arg(1700000000 + number));
    }
    connection.execute(u"COMMIT;"_s);
}

double startUpWithKnown(int count)
{
    const QTemporaryDir folder;
    const QString data = folder.filePath(u"data"_s);
    const QString covers = folder.filePath(u"covers"_s);
    const auto start = [&] {
        const DatabaseManager database{data, covers};
    };
    start();
    addFiles(covers, count);
    addRows(data + u"/quilmora.db"_s, count);
    constexpr int runs = 15;
    const double milliseconds = medianMilliseconds(runs, start);
    if (DatabaseManager{data, covers}.fetchAllHistory().size() != count) {
        qFatal("The covers were not known");
    }
    return milliseconds;
}

double startUpWithUnknown(int count)
{
    const QTemporaryDir folder;
    const QString data = folder.filePath(u"data"_s);
    const QString covers = folder.filePath(u"covers"_s);
    addFiles(covers, count);
    const double milliseconds = medianMilliseconds(1, [&] { const DatabaseManager database{data, covers}; });
    if (DatabaseManager{data, covers}.fetchAllHistory().size() != count) {
        qFatal("The covers were not adopted");
    }
    return milliseconds;
}

/// Adding one row and waiting until it is on the disk.
double oneWriteToTheDisk()
{
    const QTemporaryDir folder;
    DatabaseManager database{folder.path(), folder.filePath(u"covers"_s)};
    constexpr int runs = 51;
    return medianMilliseconds(runs, [&] { database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s); });
}

} // namespace

void benchStartUp()
{
    constexpr int count = 10000;
    report(u"start-up with 10,000 known covers, its extra time"_s,
           startUpWithKnown(count) - startUpWithKnown(0), extraMilliseconds, 1.0);
    report(u"start-up with 10,000 unknown covers, against such writes"_s, startUpWithUnknown(count),
           count * oneWriteToTheDisk(), 0.25);
}

} // namespace quilmora::bench
