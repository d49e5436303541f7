#include "StoreFixture.h"
#include "store/ImageStorageService.h"
#include "support/TestProgram.h"

#include <functional>
#include <random>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr int cannotMount = 3;
constexpr qint64 blockBytes = 4096;

/// A picture whose file takes about 60,000 bytes.
QImage noise()
{
    std::mt19937 random{1};
    QImage image{140, 140, QImage::Format_RGB888};
    std::generate_n(image.bits(), image.sizeInBytes(), [&random] { return static_cast<uchar>(random()); });
    return image;
}

/// Leaves `blocks` blocks free on the disk of `folder`, by a file of which the path is given.
QString fillDisk(const QString &folder, qint64 blocks)
{
    struct statvfs disk {
    };
    statvfs(QFile::encodeName(folder).constData(), &disk);
    const auto bytes = static_cast<qint64>(disk.f_bavail * disk.f_frsize) - blocks * blockBytes;
    return samplePictures::write(folder + u"/filler"_s, QByteArray(bytes, 'f'));
}

/// For use in a child process: prints what is wrong and ends the process, with 0 when all was written.
[[noreturn]] void printAndExit(const QByteArray &fault, bool isDone)
{
    std::printf("%s", fault.constData());
    std::fflush(stdout);
    _exit(isDone ? 0 : 1);
}

} // namespace

/// Every write of the store on a disk that has space for nothing, for one block more, for two, and so on
/// until all of it fits. Each attempt in a child process, on a disk of its own.
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
    void nothingIsHarmed_data()
    {
        addOperations();
        // Only here: with a limit for files the disk itself has space for the log into which so many would
        // go.
        QTest::newRow("many covers adopted")
            << Operation{false, 120, [](auto &, auto &) {}, "SELECT count(*) = 123 FROM history"};
    }

    void nothingIsHarmed()
    {
        QFETCH(const Operation, operation);
        const auto attemptOnDisk = [&](int blocks) {
            if (!childProcess::mountSmallDisk(m_home->path(), 400 * blockBytes)) {
                _exit(cannotMount);
            }
            QString filler;
            QByteArray wrong = attempt(operation, [&] { filler = fillDisk(m_home->path(), blocks); });
            const bool isDoneAtOnce = isDone(operation);
            QFile::remove(filler);
            if (wrong.isEmpty() && !isDoneAtOnce) {
                wrong = attemptWithSpace(operation);
            }
            printAndExit(wrong, isDoneAtOnce);
        };
        attemptUntilAllFits(0, attemptOnDisk);
    }

    void nothingIsHarmedWhereFilesMayNotGrow_data() { addOperations(); }

    void nothingIsHarmedWhereFilesMayNotGrow()
    {
        QFETCH(const Operation, operation);
        const auto attemptWithLimit = [&](int blocks) {
            const QByteArray wrong =
                attempt(operation, [&] { childProcess::limitFileSize(blocks * blockBytes); });
            printAndExit(wrong, isDone(operation));
        };
        // Without any block, what the store prints could not be kept either.
        attemptUntilAllFits(1, attemptWithLimit,
                            [&] { QCOMPARE(attemptWithSpace(operation), QByteArray{}); });
    }

    void aSmallerRowIsStoredAfterOneThatDoesNotFit()
    {
        const auto outcome = childProcess::run([this] {
            DatabaseManager database{folder(), covers()};
            childProcess::limitFileSize(65536);
            database.insertHistory(QString{100000, u'x'}, u"~/a.png"_s, u"m"_s);
            const bool isRefused = database.fetchAllHistory().isEmpty();
            database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
            _exit(isRefused && database.fetchAllHistory().size() == 1 ? 0 : 1);
        });
        QCOMPARE(errorCount(outcome.standardOutput), 1);
        QCOMPARE(outcome.exitCode, 0);
    }

private:
    static void addOperations()
    {
        const DataRows<Operation> row{"operation"};
        const auto nothing = [](auto &, auto &) {
        };
        const auto saveSettings = [](auto &database, auto &) {
            database.saveConfig(u"https://a"_s, QString{9000, u'k'}, u"m"_s);
        };
        const auto insertRow = [](auto &database, auto &) {
            database.insertHistory(QString{9000, u'p'}, u"~/a.png"_s, u"m"_s);
        };
        const auto savePicture = [](auto &database, auto &storage) {
            if (const auto path = storage.saveImage(noise())) {
                database.insertHistory(u"drawn"_s, *path, u"m"_s);
            }
        };
        row("the first start",
            Operation{true, 2, nothing,
                      "SELECT count(*) = 2 AND (SELECT count(*) FROM volc_config) = 1 FROM history"});
        row("a cover adopted", Operation{false, 1, nothing, "SELECT count(*) = 4 FROM history"});
        row("settings saved",
            Operation{false, 0, saveSettings, "SELECT length(api_key) = 9000 FROM volc_config"});
        row("a cover recorded",
            Operation{false, 0, insertRow, "SELECT count(*) >= 1 FROM history WHERE length(prompt) = 9000"});
        row("a picture stored and recorded",
            Operation{false, 0, savePicture, "SELECT count(*) >= 1 FROM history WHERE prompt = 'drawn'"});
    }

    /// Runs `attempt` in a child process with more and more blocks until all was written three times. Calls
    /// `afterFailure` when not all was written.
    void attemptUntilAllFits(
        int blocks, const std::function<void(int blocks)> &attempt,
        const std::function<void()> &afterFailure = [] {})
    {
        int failures = 0;
        for (int successes = 0; successes < 3; ++blocks) {
            QVERIFY(blocks < 300);
            const auto outcome = childProcess::run([&] { attempt(blocks); });
            if (outcome.exitCode == cannotMount) {
                QSKIP("No disk can be mounted here; the limit of the size of files stands for it");
            }
            QCOMPARE(outcome.signal, 0);
            const QByteArray message = QByteArray::number(blocks) + " blocks: " + outcome.standardOutput;
            QVERIFY2(outcome.standardOutput.isEmpty(), message.constData());
            if (outcome.exitCode != 0) {
                ++failures;
                afterFailure();
                QVERIFY2(!QTest::currentTestFailed(), message.constData());
            } else {
                ++successes;
            }
            m_home.emplace();
        }
        QVERIFY(failures > 0);
        qInfo("%d attempts without space for all of it", failures);
    }

    /// Stores what is there before the operation.
    void prepare(const Operation &operation) const
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

    QByteArray run(const Operation &operation) const
    {
        return standardOutputOf([&] {
            DatabaseManager database{folder(), covers()};
            ImageStorageService storage{covers()};
            operation.act(database, storage);
        });
    }

    bool isDone(const Operation &operation) const
    {
        const bool hasTables =
            sql("SELECT count(*) FROM sqlite_master WHERE name IN ('history', 'volc_config')") == Rows{{"2"}};
        return hasTables && sql(operation.done) == Rows{{"1"}};
    }

    /// Runs the operation where `makeTight` has left little space; gives what is wrong afterwards.
    QByteArray attempt(const Operation &operation, const std::function<void()> &makeTight) const
    {
        prepare(operation);
        const QByteArrayList before = knownState();
        makeTight();
        const QByteArray output = run(operation);
        QByteArray wrong = fault(before, output);
        if (wrong.isEmpty() && isDone(operation) != output.isEmpty()) {
            return output.isEmpty() ? QByteArray{"not done, and not reported"}
                                    : "done, but reported: " + output;
        }
        return wrong;
    }

    /// Runs it again, now that there is space.
    QByteArray attemptWithSpace(const Operation &operation) const
    {
        const QByteArray output = run(operation);
        return output.isEmpty() && isDone(operation) ? QByteArray{} : "with space again: " + output;
    }

    /// What the first three covers and their rows are; empty on a fresh start.
    QByteArrayList knownState() const
    {
        QByteArrayList found;
        for (const QFileInfo &entry : QDir{covers()}.entryInfoList({u"known*"_s}, QDir::Files)) {
            found.append(entry.fileName().toUtf8() + ' ' + QByteArray::number(entry.size()));
        }
        if (!found.isEmpty()) {
            for (const databaseFile::Row &row :
                 sql("SELECT * FROM history WHERE image_path LIKE '%/known%'")) {
                found.append(row.join('|'));
            }
        }
        return found;
    }

    /// What is wrong with the store's files; empty for nothing.
    QByteArray fault(const QByteArrayList &before, const QByteArray &output) const
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
};

QUILMORA_TEST(FullDiskTest, runCoreTest)
#include "FullDiskTest.moc"
