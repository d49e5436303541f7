#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QFileInfo>
#include <QTest>

#include <functional>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

using Make = std::function<void(const QString &path)>;

void makeFolder(const QString &path)
{
    QDir{}.mkpath(path + u"/inside"_s);
}

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
    const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    const void *const plain = &address;
    if (bind(socketDescriptor, static_cast<const sockaddr *>(plain), sizeof address) != 0) {
        qFatal("Cannot make a socket");
    }
    close(socketDescriptor);
}

void makeLinkToItself(const QString &path)
{
    QFile::link(path, path);
}

Make fileOf(const QByteArray &bytes)
{
    return [bytes](const QString &path) {
        samplePictures::write(path, bytes);
    };
}

/// What lies at `path`: its kind, its owner's permissions (the store takes away those of others), and the
/// contents of a file.
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

/// Something else than a sound database at the database's path, or beside it. A child process that hangs is
/// ended after ten seconds.
class StrangeFileTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void otherFilesAreReportedAndKept_data()
    {
        QTest::addColumn<Make>("make");
        QTest::addColumn<bool>("opens");
        QTest::newRow("a folder") << Make{makeFolder} << false;
        QTest::newRow("a pipe") << Make{makePipe} << false;
        QTest::newRow("a socket") << Make{makeSocket} << false;
        QTest::newRow("a link to itself") << Make{makeLinkToItself} << false;
        QTest::newRow("a picture") << fileOf(samplePictures::png(samplePictures::picture({200, 200})))
                                   << true;
        QTest::newRow("a text") << fileOf("{\"settings\": []}\n" + QByteArray(3000, ' ')) << true;
        QTest::newRow("zeros") << fileOf(QByteArray(8192, '\0')) << true;
    }

    void otherFilesAreReportedAndKept()
    {
        QFETCH(const Make, make);
        QFETCH(const bool, opens);
        QDir{}.mkpath(folder());
        setMode(folder(), 0700);
        make(file());
        const QByteArray before = described(file());
        const auto outcome = childProcess::run([this] { useAndPrint(); });
        QCOMPARE(outcome.signal, 0);
        // Three statements of the start, and the three operations.
        const QByteArray output =
            opens ? QByteArray{"SQL 错误: file is not a database\n"}.repeated(6) : cannotOpen();
        QCOMPARE(outcome.standardOutput, output + "defaults, 0 covers\n");
        QCOMPARE(described(file()), before);
        QCOMPARE(
            QDir{folder()}.entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList{u"quilmora.db"_s});
    }

    void aFileInPlaceOfTheFolderIsReportedAndKept()
    {
        samplePictures::write(folder(), "somebody's");
        setMode(folder(), 0644);
        QCOMPARE(standardOutputOf([this] { useAndPrint(); }), cannotOpen() + "defaults, 0 covers\n");
        QCOMPARE(modeOf(folder()), u"644"_s);
        QVERIFY(described(folder()).endsWith(" somebody's"));
    }

    void aFolderThatCannotBeMadeIsReported()
    {
        setMode(m_home->path(), 0555);
        const auto outcome = childProcess::run([this] {
            childProcess::becomeOrdinaryUser();
            useAndPrint();
        });
        QCOMPARE(outcome.standardOutput, cannotOpen() + "defaults, 0 covers\n");
        QVERIFY(!QFileInfo::exists(folder()));
    }

    void anEmptyFileOrALinkToNothingIsFilled_data()
    {
        QTest::addColumn<Make>("make");
        QTest::newRow("nothing") << Make{[](const QString &) {
        }};
        QTest::newRow("an empty file") << fileOf({});
        QTest::newRow("a link to nothing") << Make{[](const QString &path) {
            QFile::link(u"elsewhere.db"_s, path);
        }};
    }

    void anEmptyFileOrALinkToNothingIsFilled()
    {
        QFETCH(const Make, make);
        QDir{}.mkpath(folder());
        make(file());
        addCover(u"b.png"_s);
        QCOMPARE(standardOutputOf([this] { useAndPrint(); }), QByteArray{"key, 2 covers\n"});
        QCOMPARE(paths(), (QByteArrayList{stored("b.png"), "~/a.png"}));
    }

    void anotherProgramsTablesAreLeftAlone()
    {
        sql("CREATE TABLE notes (id INTEGER PRIMARY KEY, text TEXT); INSERT INTO notes VALUES (1, 'n');"
            "PRAGMA user_version = 17; PRAGMA application_id = 4711");
        QCOMPARE(standardOutputOf([this] { useAndPrint(); }), QByteArray{"key, 1 covers\n"});
        QCOMPARE(sql("SELECT * FROM notes; PRAGMA user_version; PRAGMA application_id"),
                 (Rows{{"1", "n"}, {"17"}, {"4711"}}));
    }

    void missingPermissionsAreReportedAndNothingChanges_data()
    {
        QTest::addColumn<mode_t>("fileMode");
        QTest::addColumn<mode_t>("folderMode");
        QTest::addColumn<int>("failures"); ///< -1 when the file cannot be opened.
        QTest::newRow("a read-only file") << mode_t{0444} << mode_t{0755} << 3;
        QTest::newRow("an unreadable file") << mode_t{0000} << mode_t{0755} << -1;
        // A row that is not there is removed without a journal.
        QTest::newRow("a read-only folder") << mode_t{0666} << mode_t{0555} << 2;
    }

    void missingPermissionsAreReportedAndNothingChanges()
    {
        QFETCH(const mode_t, fileMode);
        QFETCH(const mode_t, folderMode);
        QFETCH(const int, failures);
        start();
        sql("UPDATE volc_config SET api_key = 'former'; INSERT INTO history VALUES (1, 'p', 'i', 1.0, 'm')");
        const Rows before = everything();
        setMode(file(), fileMode);
        setMode(folder(), folderMode);
        const auto outcome = childProcess::run([this] {
            childProcess::becomeOrdinaryUser();
            useAndPrint();
        });
        setMode(folder(), 0755);
        setMode(file(), 0644);
        const QByteArray readOnly{"SQL 错误: attempt to write a readonly database\n"};
        QCOMPARE(outcome.standardOutput, failures < 0 ? QByteArray{cannotOpen() + "defaults, 0 covers\n"}
                                                      : readOnly.repeated(failures) + "former, 1 covers\n");
        QCOMPARE(everything(), before);
    }

    void aMissingTableIsReportedByWritesOnly()
    {
        open();
        sql("DROP TABLE history; DROP TABLE volc_config");
        QCOMPARE(standardOutputOf([this] { use(*m_database); }),
                 QByteArray{"SQL 错误: no such table: volc_config\n"
                            "SQL 错误: no such table: history\n"
                            "SQL 错误: no such table: history\n"
                            "defaults, 0 covers\n"});
    }

private:
    /// Tries every operation and prints what was read.
    static void use(DatabaseManager &database)
    {
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        database.deleteHistory(99);
        const VolcengineConfig config = database.getConfig();
        const bool isDefault = config.apiURL == VolcengineConfig::defaultURL() && config.apiKey.isEmpty() &&
                               config.modelID == VolcengineConfig::defaultModelID();
        std::printf("%s, %d covers\n", isDefault ? "defaults" : qPrintable(config.apiKey),
                    static_cast<int>(database.fetchAllHistory().size()));
    }
    void useAndPrint() const
    {
        DatabaseManager database{folder(), covers()};
        use(database);
    }
};

QUILMORA_TEST(StrangeFileTest, runCoreTest)
#include "StrangeFileTest.moc"
