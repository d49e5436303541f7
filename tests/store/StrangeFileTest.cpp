#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QFileInfo>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

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

const QByteArray readOnlyLine{"SQL 错误: attempt to write a readonly database\n"};

} // namespace

/// Something else than a sound database at the database's path, from the start or while the store is in use:
/// what fails is reported, and what was put there is kept. A child process that hangs is ended after ten
/// seconds.
class StrangeFileTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void otherFilesAreReportedAndKept_data()
    {
        const DataRows<Make, bool> row{"make", "opens"};
        row("a folder", makeFolder, false);
        row("a pipe", makePipe, false);
        row("a socket", makeSocket, false);
        row("a link to itself", linkTo(u"quilmora.db"_s), false);
        row("a picture", fileOf(samplePictures::png(samplePictures::picture({200, 200}))), true);
        row("a text", fileOf("{\"settings\": []}\n" + QByteArray(3000, ' ')), true);
        row("zeros", fileOf(QByteArray(8192, '\0')), true);
    }

    void otherFilesAreReportedAndKept()
    {
        QFETCH(const Make, make);
        QFETCH(const bool, opens);
        QDir{}.mkpath(folder());
        setMode(folder(), 0700);
        make(file());
        const QByteArray before = described(file());
        // Three statements of the start, and the three operations.
        const QByteArray output =
            opens ? QByteArray{"SQL 错误: file is not a database\n"}.repeated(6) : cannotOpen();
        QCOMPARE(childProcess::run([this] { useAndPrint(); }),
                 childProcess::succeeded(output + "defaults, 0 covers\n"));
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
        QCOMPARE(useAsOrdinaryUser(), childProcess::succeeded(cannotOpen() + "defaults, 0 covers\n"));
        QVERIFY(!QFileInfo::exists(folder()));
    }

    void anEmptyFileOrALinkToNothingIsFilled_data()
    {
        const DataRows<Make> row{"make"};
        row("nothing", makeNothing);
        row("an empty file", fileOf({}));
        row("a link to nothing", linkTo(u"elsewhere.db"_s));
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
        // -1 failures when the file cannot be opened. A row that is not there is removed without a journal.
        const DataRows<mode_t, mode_t, int> row{"fileMode", "folderMode", "failures"};
        row("a read-only file", 0444, 0755, 3);
        row("an unreadable file", 0000, 0755, -1);
        row("a read-only folder", 0666, 0555, 2);
    }

    void missingPermissionsAreReportedAndNothingChanges()
    {
        QFETCH(const mode_t, fileMode);
        QFETCH(const mode_t, folderMode);
        QFETCH(const int, failures);
        fill();
        const Rows before = everything();
        setMode(file(), fileMode);
        setMode(folder(), folderMode);
        const auto outcome = useAsOrdinaryUser();
        setMode(folder(), 0755);
        setMode(file(), 0644);
        const QByteArray output = failures < 0 ? QByteArray{cannotOpen() + "defaults, 0 covers\n"}
                                               : readOnlyLine.repeated(failures) + "former, 1 covers\n";
        QCOMPARE(outcome, childProcess::succeeded(output));
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

    void withoutItsDatabaseTheOpenStoreGoesOn_data()
    {
        const DataRows<Make> row{"replace"};
        row("gone", makeNothing);
        row("an empty file", fileOf({}));
        row("another program's file", fileOf("somebody's"));
        row("a folder", makeFolder);
        row("a pipe", makePipe);
    }

    void withoutItsDatabaseTheOpenStoreGoesOn()
    {
        QFETCH(const Make, replace);
        fill();
        const Rows before = everything();
        const QString aside = file() + u".aside"_s;
        const auto outcome = useAfter([&] {
            QFile::rename(file(), aside);
            replace(file());
        });
        // Reported rather than written where nobody finds it.
        QCOMPARE(outcome, childProcess::succeeded(readOnlyLine.repeated(3) + "former, 1 covers\n"));
        const QFileInfo put{file()};
        QVERIFY(!put.isFile() || put.size() == 0 || put.size() == 10);
        if (put.isDir()) {
            QDir{}.rmdir(file());
        }
        QFile::remove(file());
        QVERIFY(QFile::rename(aside, file()));
        QCOMPARE(everything(), before);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(everything(), before);
    }

    void withoutItsFolderTheOpenStoreGoesOn()
    {
        fill();
        const Rows before = everything();
        const QString aside = folder() + u".aside"_s;
        const auto outcome = useAfter([&] { QDir{}.rename(folder(), aside); });
        QCOMPARE(outcome, childProcess::succeeded(readOnlyLine.repeated(3) + "former, 1 covers\n"));
        QVERIFY(!QFileInfo::exists(folder()));
        QVERIFY(QDir{}.rename(aside, folder()));
        QCOMPARE(everything(), before);
    }

private:
    /// Settings, and a cover with its row.
    void fill() const
    {
        start();
        sql("UPDATE volc_config SET api_key = 'former'; INSERT INTO history VALUES (1, 'p', '" +
            stored("a.png") + "', 1.0, 'm')");
        addCover(u"a.png"_s);
    }

    /// Tries every operation and prints what was read.
    static void use(DatabaseManager &database, qint64 idToDelete = 99)
    {
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        database.deleteHistory(idToDelete);
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

    childProcess::Outcome useAsOrdinaryUser() const
    {
        return childProcess::run([this] {
            childProcess::becomeOrdinaryUser();
            useAndPrint();
        });
    }

    /// Opens the store, lets `change` happen, and tries every operation, all in a child process.
    childProcess::Outcome useAfter(const std::function<void()> &change) const
    {
        return childProcess::run([&] {
            DatabaseManager database{folder(), covers()};
            change();
            use(database, 1);
        });
    }
};

QUILMORA_TEST(StrangeFileTest, runCoreTest)
#include "StrangeFileTest.moc"
