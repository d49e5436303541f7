#include "StoreFixture.h"

#include <QFileInfo>
#include <QTest>

#include <functional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace
{

using Make = std::function<void(const QString &path)>;

void makePipe(const QString &path)
{
    if (mkfifo(QFile::encodeName(path).constData(), 0666) != 0) {
        qFatal("Cannot make a pipe");
    }
}

void makeSocket(const QString &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::copy(name.begin(), name.end(), std::begin(address.sun_path));
    const int line = socket(AF_UNIX, SOCK_STREAM, 0);
    const void *const plain = &address;
    if (bind(line, static_cast<const sockaddr *>(plain), sizeof address) != 0) {
        qFatal("Cannot make a socket");
    }
    close(line);
}

Make linkTo(const QString &target)
{
    return [target](const QString &path) {
        QFile::link(target, path);
    };
}

Make fileOf(const QByteArray &bytes)
{
    return [bytes](const QString &path) {
        samplePictures::write(path, bytes);
    };
}

/// What lies at `path`: its kind and its owner's rights (those of others are taken away in the database's
/// place), and the contents of a file.
QByteArray described(const QString &path)
{
    struct stat entry {
    };
    if (lstat(QFile::encodeName(path).constData(), &entry) != 0) {
        return "nothing";
    }
    QByteArray text = QByteArray::number(entry.st_mode & ~static_cast<mode_t>(S_IRWXG | S_IRWXO), 8);
    QFile file{path};
    if (S_ISREG(entry.st_mode) && file.open(QIODevice::ReadOnly)) {
        text += ' ' + file.readAll();
    }
    return text;
}

} // namespace

/// What is no database lies in its place, or beside it. A copy of the process that hangs is ended after ten
/// seconds.
class StrangeFileTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void inTheDatabasesPlaceItIsToldAndKept_data();
    void inTheDatabasesPlaceItIsToldAndKept();
    void aPipeInThePlaceOfItsJournalIsToldAndNotReadFrom();
    void anEmptyPlaceIsFilled_data();
    void anEmptyPlaceIsFilled();
    void anotherProgramsTablesAreLeftAlone();
    void withoutTheRightsItIsToldAndKept_data();
    void withoutTheRightsItIsToldAndKept();

private:
    /// Tries every operation and prints what was read.
    void useAndPrint() const
    {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        database.deleteHistory(99);
        std::printf("%s, %d covers\n", qPrintable(database.getConfig().apiKey),
                    static_cast<int>(database.fetchAllHistory().size()));
    }
    QByteArray cannotOpen() const { return "无法打开数据库: " + file().toUtf8() + '\n'; }
};

void StrangeFileTest::inTheDatabasesPlaceItIsToldAndKept_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<QByteArray>("line"); ///< Of each statement.
    const QByteArray notOne{"SQL 错误: file is not a database\n"};
    QTest::newRow("a folder") << Make{[](const QString &path) {
        QDir{}.mkpath(path + u"/inside"_s);
    }} << false << QByteArray{};
    QTest::newRow("a pipe") << Make{makePipe} << false << QByteArray{};
    QTest::newRow("a socket") << Make{makeSocket} << false << QByteArray{};
    QTest::newRow("a link to itself") << Make{[](const QString &path) {
        QFile::link(path, path);
    }} << false << QByteArray{};
    QTest::newRow("a picture") << fileOf(samplePictures::png(samplePictures::picture({200, 200}))) << true
                               << notOne;
    QTest::newRow("a text") << fileOf("{\"settings\": []}\n" + QByteArray(3000, ' ')) << true << notOne;
    QTest::newRow("zeros") << fileOf(QByteArray(8192, '\0')) << true << notOne;
}

void StrangeFileTest::inTheDatabasesPlaceItIsToldAndKept()
{
    QFETCH(const Make, make);
    QFETCH(const bool, opens);
    QFETCH(const QByteArray, line);
    QDir{}.mkpath(folder());
    setMode(folder(), 0700);
    make(file());
    const QByteArray before = described(file());
    const auto outcome = childProcess::run([this] { useAndPrint(); });
    QCOMPARE(outcome.signal, 0);
    // Three statements of the start, and the three operations.
    QCOMPARE(outcome.standardOutput, (opens ? line.repeated(6) : cannotOpen()) + ", 0 covers\n");
    QCOMPARE(described(file()), before);
    QCOMPARE(QDir{folder()}.entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"quilmora.db"_s});
}

void StrangeFileTest::aPipeInThePlaceOfItsJournalIsToldAndNotReadFrom()
{
    start();
    const QString journal = file() + u"-journal"_s;
    makePipe(journal);
    const auto outcome = childProcess::run([this] { useAndPrint(); });
    QCOMPARE(outcome.signal, 0);
    QCOMPARE(outcome.standardOutput, QByteArray{cannotOpen() + ", 0 covers\n"});
    QFile::remove(journal);
    QCOMPARE(start(), QByteArray{});
}

void StrangeFileTest::anEmptyPlaceIsFilled_data()
{
    QTest::addColumn<Make>("make");
    QTest::newRow("nothing") << Make{[](const QString &) {
    }};
    QTest::newRow("an empty file") << fileOf({});
    QTest::newRow("a link to nothing") << linkTo(u"elsewhere.db"_s);
}

void StrangeFileTest::anEmptyPlaceIsFilled()
{
    QFETCH(const Make, make);
    QDir{}.mkpath(folder());
    make(file());
    addCover(u"b.png"_s);
    const auto outcome = childProcess::run([this] { useAndPrint(); });
    QCOMPARE(outcome.standardOutput, QByteArray{"key, 2 covers\n"});
    QCOMPARE(paths(), (QByteArrayList{"~/Pictures/Quilmora/coverimg/b.png", "~/a.png"}));
}

void StrangeFileTest::anotherProgramsTablesAreLeftAlone()
{
    sql("CREATE TABLE notes (id INTEGER PRIMARY KEY, text TEXT); INSERT INTO notes VALUES (1, 'n');"
        "PRAGMA user_version = 17; PRAGMA application_id = 4711");
    const auto outcome = childProcess::run([this] { useAndPrint(); });
    QCOMPARE(outcome.standardOutput, QByteArray{"key, 1 covers\n"});
    QCOMPARE(sql("SELECT * FROM notes; PRAGMA user_version; PRAGMA application_id"),
             (Rows{{"1", "n"}, {"17"}, {"4711"}}));
}

void StrangeFileTest::withoutTheRightsItIsToldAndKept_data()
{
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<int>("folderMode");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<QByteArray>("lines"); ///< A row that is not there is removed without a journal.
    const QByteArray readOnly{"SQL 错误: attempt to write a readonly database\n"};
    QTest::newRow("a file that may only be read") << 0444 << 0755 << true << readOnly.repeated(3);
    QTest::newRow("a file that may not even be read") << 0000 << 0755 << false << QByteArray{};
    QTest::newRow("a folder that may only be read") << 0666 << 0555 << true << readOnly.repeated(2);
}

void StrangeFileTest::withoutTheRightsItIsToldAndKept()
{
    QFETCH(const int, fileMode);
    QFETCH(const int, folderMode);
    QFETCH(const bool, opens);
    QFETCH(const QByteArray, lines);
    start();
    sql("UPDATE volc_config SET api_key = 'former'; INSERT INTO history VALUES (1, 'p', 'i', 1.0, 'm')");
    const Rows before = everything();
    setMode(file(), static_cast<mode_t>(fileMode));
    setMode(folder(), static_cast<mode_t>(folderMode));
    const auto outcome = childProcess::run([this] {
        childProcess::becomeOrdinaryUser();
        useAndPrint();
    });
    setMode(folder(), 0755);
    setMode(file(), 0644);
    QCOMPARE(outcome.standardOutput,
             opens ? QByteArray{lines + "former, 1 covers\n"} : QByteArray{cannotOpen() + ", 0 covers\n"});
    QCOMPARE(everything(), before);
}

QTEST_GUILESS_MAIN(StrangeFileTest)
#include "StrangeFileTest.moc"
