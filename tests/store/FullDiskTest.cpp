#include "StoreFixture.h"
#include "store/ImageStorageService.h"

#include <QTest>

#include <functional>
#include <random>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace
{

constexpr int cannotMount = 3;
constexpr qint64 blockBytes = 4096;

/// A picture whose file takes about 60,000 bytes.
QImage noise()
{
    std::mt19937 random{1};
    QImage image{140, 140, QImage::Format_RGB32};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, static_cast<QRgb>(random()) | 0xff000000U);
        }
    }
    return image;
}

/// Leaves `blocks` blocks free on the disk of `folder`, by a file of which the path is given.
QString fillDisk(const QString &folder, qint64 blocks)
{
    struct statvfs disk {
    };
    statvfs(QFile::encodeName(folder).constData(), &disk);
    const auto room = static_cast<qint64>(disk.f_bavail * disk.f_frsize) - blocks * blockBytes;
    QString path = folder + u"/filler"_s;
    samplePictures::write(path, QByteArray(room, 'f'));
    return path;
}

} // namespace

/// Every write of the store on a disk that has room for nothing, for one block more, for two, and so on until
/// all of it fits. Each attempt in a copy of the process, on a disk of its own.
class FullDiskTest final : public StoreFixture
{
    Q_OBJECT

public:
    /// Something that writes, and how to tell that all of it was written.
    struct Operation {
        bool isFirst; ///< Nothing was stored before it.
        int orphans;  ///< Covers without a row before it.
        std::function<void(DatabaseManager &, ImageStorageService &)> act;
        QByteArray done; ///< Gives 1 when it is done, past the store.
    };

private Q_SLOTS:
    void nothingIsHarmed_data();
    void nothingIsHarmed();
    void nothingIsHarmedWhereFilesMayNotGrow_data() { addOperations(); }
    void nothingIsHarmedWhereFilesMayNotGrow();

private:
    static void addOperations();

    void store(const Operation &operation) const;
    QByteArray run(const Operation &operation) const;
    bool isDone(const Operation &operation) const;
    /// What the first three covers and their rows are, and the settings; empty on a fresh start.
    QByteArrayList knownState() const;
    /// What is wrong with the store's files; empty for nothing.
    QByteArray fault(const QByteArrayList &before, const QByteArray &output) const;
    /// Runs the operation where `makeTight` has left little room; gives what is wrong afterwards.
    QByteArray attempt(const Operation &operation, const std::function<void()> &makeTight) const;
    /// Runs it again, now that there is room.
    QByteArray attemptWithRoom(const Operation &operation) const;
};

void FullDiskTest::addOperations()
{
    QTest::addColumn<Operation>("operation");
    const auto nothing = [](DatabaseManager &, ImageStorageService &) {
    };
    QTest::newRow("the first start") << Operation{
        true, 2, nothing, "SELECT count(*) = 2 AND (SELECT count(*) FROM volc_config) = 1 FROM history"};
    QTest::newRow("a cover adopted") << Operation{false, 1, nothing, "SELECT count(*) = 4 FROM history"};
    QTest::newRow("settings saved") << Operation{
        false, 0,
        [](DatabaseManager &database, ImageStorageService &) {
            database.saveConfig(u"https://a"_s, QString{9000, u'k'}, u"m"_s);
        },
        "SELECT length(api_key) = 9000 FROM volc_config"};
    QTest::newRow("a cover recorded")
        << Operation{false, 0,
                     [](DatabaseManager &database, ImageStorageService &) {
                         database.insertHistory(QString{9000, u'p'}, u"~/a.png"_s, u"m"_s);
                     },
                     "SELECT count(*) >= 1 FROM history WHERE length(prompt) = 9000"};
    QTest::newRow("a picture stored and recorded")
        << Operation{false, 0,
                     [](DatabaseManager &database, ImageStorageService &storage) {
                         if (const auto path = storage.saveImage(noise())) {
                             database.insertHistory(u"drawn"_s, *path, u"m"_s);
                         }
                     },
                     "SELECT count(*) >= 1 FROM history WHERE prompt = 'drawn'"};
}

void FullDiskTest::nothingIsHarmed_data()
{
    addOperations();
    // Only here: with a limit for files the disk itself has room for a log, into which such many would go.
    QTest::newRow("many covers adopted") << Operation{
        false, 120, [](DatabaseManager &, ImageStorageService &) {}, "SELECT count(*) = 123 FROM history"};
}

/// Brings about what is there before the operation.
void FullDiskTest::store(const Operation &operation) const
{
    if (!operation.isFirst) {
        for (const QString &name : {u"known1.png"_s, u"known2.png"_s, u"known3.png"_s}) {
            addCover(name);
        }
        DatabaseManager{folder(), covers()}.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    }
    for (int number = 0; number < operation.orphans; ++number) {
        addCover(u"%1.png"_s.arg(number));
    }
    QDir{}.mkpath(covers());
}

QByteArray FullDiskTest::run(const Operation &operation) const
{
    return standardOutputOf([&] {
        DatabaseManager database{folder(), covers()};
        ImageStorageService storage{covers()};
        operation.act(database, storage);
    });
}

bool FullDiskTest::isDone(const Operation &operation) const
{
    const bool hasTables =
        sql("SELECT count(*) FROM sqlite_master WHERE name IN ('history', 'volc_config')") == Rows{{"2"}};
    return hasTables && sql(operation.done) == Rows{{"1"}};
}

QByteArrayList FullDiskTest::knownState() const
{
    QByteArrayList found;
    for (const QFileInfo &entry : QDir{covers()}.entryInfoList({u"known*"_s}, QDir::Files)) {
        found.append(entry.fileName().toUtf8() + ' ' + QByteArray::number(entry.size()));
    }
    if (!found.isEmpty()) {
        for (const databaseFile::Row &row : sql("SELECT * FROM history WHERE image_path LIKE '%/known%'")) {
            found.append(row.join('|'));
        }
    }
    return found;
}

QByteArray FullDiskTest::fault(const QByteArrayList &before, const QByteArray &output) const
{
    if (knownState() != before) {
        return "what was stored has changed";
    }
    if (!before.isEmpty() && sql("SELECT api_url, api_key IN ('key', '" + QByteArray(9000, 'k') +
                                 "') FROM volc_config") != Rows{{"https://a", "1"}}) {
        return "the settings are neither the former nor the new ones";
    }
    if (sql("PRAGMA integrity_check") != Rows{{"ok"}}) {
        return "the database is damaged";
    }
    const QStringList left = QDir{folder()}.entryList(QDir::Files | QDir::Hidden);
    if (left != QStringList{u"quilmora.db"_s}) {
        return "left behind: " + left.join(u' ').toUtf8();
    }
    for (const QFileInfo &entry : QDir{covers()}.entryInfoList({u"cover_*"_s}, QDir::Files)) {
        if (ImageStorageService{covers()}.loadImage(entry.filePath()).isNull()) {
            return "half a file is left";
        }
    }
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty() && !line.startsWith("SQL 错误: ") && !line.startsWith("保存图片失败: ")) {
            return "another line: " + line;
        }
    }
    return {};
}

QByteArray FullDiskTest::attempt(const Operation &operation, const std::function<void()> &makeTight) const
{
    store(operation);
    const QByteArrayList before = knownState();
    makeTight();
    const QByteArray output = run(operation);
    QByteArray wrong = fault(before, output);
    if (wrong.isEmpty() && isDone(operation) != output.isEmpty()) {
        return output.isEmpty() ? QByteArray{"not done, and not told"} : "done, but told: " + output;
    }
    return wrong;
}

QByteArray FullDiskTest::attemptWithRoom(const Operation &operation) const
{
    const QByteArray output = run(operation);
    return output.isEmpty() && isDone(operation) ? QByteArray{} : "with room again: " + output;
}

void FullDiskTest::nothingIsHarmed()
{
    QFETCH(const Operation, operation);
    int failures = 0;
    for (int blocks = 0, done = 0; done < 3; ++blocks) {
        QVERIFY(blocks < 300);
        const auto outcome = childProcess::run([&] {
            if (!childProcess::mountSmallDisk(home->path(), 400 * blockBytes)) {
                _exit(cannotMount);
            }
            QString filler;
            QByteArray wrong = attempt(operation, [&] { filler = fillDisk(home->path(), blocks); });
            const bool isDoneAtOnce = isDone(operation);
            QFile::remove(filler);
            if (wrong.isEmpty() && !isDoneAtOnce) {
                wrong = attemptWithRoom(operation);
            }
            std::printf("%s", wrong.constData());
            std::fflush(stdout);
            _exit(isDoneAtOnce ? 0 : 1);
        });
        if (outcome.exitCode == cannotMount) {
            QSKIP("No disk can be mounted here; the limit of the size of files stands for it");
        }
        QCOMPARE(outcome.signal, 0);
        QVERIFY2(outcome.standardOutput.isEmpty(),
                 QByteArray{QByteArray::number(blocks) + " blocks: " + outcome.standardOutput}.constData());
        done += outcome.exitCode == 0 ? 1 : 0;
        failures += outcome.exitCode;
    }
    QVERIFY(failures > 0);
    qInfo("%d attempts without room for all of it", failures);
}

void FullDiskTest::nothingIsHarmedWhereFilesMayNotGrow()
{
    QFETCH(const Operation, operation);
    int failures = 0;
    // With none, what the store prints could not be kept either.
    for (int blocks = 1, done = 0; done < 3; ++blocks) {
        QVERIFY(blocks < 300);
        const auto outcome = childProcess::run([&] {
            const QByteArray wrong =
                attempt(operation, [&] { childProcess::limitFileSize(blocks * blockBytes); });
            std::printf("%s", wrong.constData());
            std::fflush(stdout);
            _exit(isDone(operation) ? 0 : 1);
        });
        QCOMPARE(outcome.signal, 0);
        QVERIFY2(outcome.standardOutput.isEmpty(),
                 QByteArray{QByteArray::number(blocks) + " blocks: " + outcome.standardOutput}.constData());
        if (outcome.exitCode != 0) {
            QCOMPARE(attemptWithRoom(operation), QByteArray{});
        }
        done += outcome.exitCode == 0 ? 1 : 0;
        failures += outcome.exitCode;
        home.emplace();
    }
    QVERIFY(failures > 0);
    qInfo("%d attempts without room for all of it", failures);
}

QTEST_GUILESS_MAIN(FullDiskTest)
#include "FullDiskTest.moc"
