#include "StoreFixture.h"
#include "store/SqliteConnection.h"
#include "support/TestProgram.h"

#include <QFileInfo>

using namespace quilmora;
using namespace quilmora::test;

namespace {

const QString key = u"sk-5eb63bbbe01eeed0"_s;

} // namespace

/// Nobody but the owner of the database reads the key: not from its files, and not from what is printed.
class DatabaseLeakTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aNewDatabaseIsClosedToOthers_data()
    {
        QTest::addColumn<mode_t>("mask");
        QTest::newRow("with a usual mask") << mode_t{022};
        QTest::newRow("with no mask at all") << mode_t{0};
        QTest::newRow("with a strict mask") << mode_t{077};
    }

    void aNewDatabaseIsClosedToOthers()
    {
        QFETCH(const mode_t, mask);
        const mode_t former = umask(mask);
        open();
        m_database->saveConfig(u"https://a"_s, key, u"m"_s);
        umask(former);
        QCOMPARE(modeOf(folder()), u"700"_s);
        QCOMPARE(modeOf(file()), u"600"_s);
        // The folder above it is not the program's own.
        QCOMPARE(modeOf(QFileInfo{folder()}.path()), QString::number(0777U & ~mask, 8));
    }

    void anExistingDatabaseIsClosedToOthers_data()
    {
        const DataRows<mode_t, QString> row{"before", "after"};
        row("readable by all", 0644, u"600"_s);
        row("writable by all", 0666, u"600"_s);
        row("readable by the group", 0640, u"600"_s);
        row("everything allowed", 0777, u"600"_s);
        row("closed already", 0600, u"600"_s);
        row("read-only", 0444, u"400"_s);
        row("read-only, and closed", 0400, u"400"_s);
    }

    void anExistingDatabaseIsClosedToOthers()
    {
        QFETCH(const mode_t, before);
        QFETCH(const QString, after);
        open();
        m_database->saveConfig(u"https://a"_s, key, u"m"_s);
        m_database.reset();
        setMode(folder(), 0755);
        setMode(file(), before);
        start();
        QCOMPARE(modeOf(folder()), u"700"_s);
        QCOMPARE(modeOf(file()), after);
        QCOMPARE(sql("SELECT api_key FROM volc_config"), Rows{{key.toUtf8()}});
    }

    void aFolderThatIsClosedAlreadyStaysAsItIs()
    {
        QVERIFY(QDir{}.mkpath(folder()));
        setMode(folder(), 0500);
        start();
        QCOMPARE(modeOf(folder()), u"500"_s);
    }

    void filesBesideItAreClosedToOthers_data()
    {
        QTest::addColumn<QString>("suffix");
        for (const char *suffix : {"-journal", "-wal", "-shm"}) {
            QTest::newRow(suffix) << QString::fromLatin1(suffix);
        }
    }

    void filesBesideItAreClosedToOthers()
    {
        QFETCH(const QString, suffix);
        start();
        // As a program that was killed leaves it before the first change.
        samplePictures::write(file() + suffix, QByteArray(1, '\0'));
        setMode(file() + suffix, 0644);
        QCOMPARE(standardOutputOf([this] { open(); }), QByteArray{});
        const QString mode = modeOf(file() + suffix);
        // SQLite removes an empty log.
        const bool mayBeGone = suffix == u"-wal"_s;
        QVERIFY2(mode == u"600"_s || (mayBeGone && mode == u"0"_s), qPrintable(mode));
    }

    void theJournalIsClosedToOthers()
    {
        const mode_t former = umask(0);
        const auto restore = qScopeGuard([former] { umask(former); });
        start();
        SqliteConnection connection{file()};
        connection.execute(u"BEGIN; UPDATE volc_config SET api_key = 'x';"_s);
        QCOMPARE(modeOf(file() + u"-journal"_s), u"600"_s);
        connection.execute(u"ROLLBACK;"_s);
    }

    void theTargetOfALinkIsClosedToOthers()
    {
        const QString elsewhere = samplePictures::write(m_home->path(u"elsewhere.db"_s), {});
        setMode(elsewhere, 0644);
        QDir{}.mkpath(folder());
        QVERIFY(QFile::link(elsewhere, file()));
        start();
        QCOMPARE(modeOf(elsewhere), u"600"_s);
        QVERIFY(QFileInfo{file()}.isSymLink());
    }

    void aFolderInPlaceOfTheFileStaysAsItIs()
    {
        QDir{}.mkpath(file());
        setMode(file(), 0755);
        QCOMPARE(start(), cannotOpen());
        QCOMPARE(modeOf(file()), u"755"_s);
    }

    void aFailedSaveDoesNotPrintTheKey_data()
    {
        const DataRows<QByteArray, QByteArray> row{"damage", "message"};
        row("no table", "DROP TABLE volc_config", "no such table: volc_config");
        row("no column", "ALTER TABLE volc_config RENAME COLUMN api_key TO k",
            "table volc_config has no column named api_key");
        row("a trigger",
            "CREATE TRIGGER t BEFORE INSERT ON volc_config "
            "BEGIN SELECT RAISE(ABORT, 'no'); END",
            "no");
    }

    void aFailedSaveDoesNotPrintTheKey()
    {
        QFETCH(const QByteArray, damage);
        QFETCH(const QByteArray, message);
        open();
        sql(damage);
        const QByteArray output =
            standardOutputOf([this] { m_database->saveConfig(u"https://a"_s, key, u"it's a model"_s); });
        QCOMPARE(output, "SQL 错误: " + message + '\n');
    }

    void aKeyWithANulIsRefusedAndNotPrinted()
    {
        open();
        m_database->saveConfig(u"https://a"_s, u"former"_s, u"m"_s);
        for (const QString &withNul : {QString{key + QChar::Null}, QString{key + QChar::Null + u"more"_s},
                                       QString{QChar::Null + key}}) {
            const QByteArray output =
                standardOutputOf([&] { m_database->saveConfig(u"https://b"_s, withNul, u"n"_s); });
            QCOMPARE(output, QByteArray{"SQL 错误: the key contains NUL\n"});
            QCOMPARE(sql("SELECT * FROM volc_config"), (Rows{{"1", "https://a", "former", "m"}}));
        }
    }
};

QUILMORA_TEST(DatabaseLeakTest, runCoreTest)
#include "DatabaseLeakTest.moc"
