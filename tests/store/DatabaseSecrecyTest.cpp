#include "StoreFixture.h"
#include "store/QuickCommits.h"
#include "store/SqliteConnection.h"

#include <QFileInfo>
#include <QTest>

#include <functional>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QString key = u"sk-5eb63bbbe01eeed0"_s;

/// The mode bits of the file or folder at `path`, as an octal text; "0" if there is none.
QString modeOf(const QString &path)
{
    struct stat status {
    };
    stat(QFile::encodeName(path).constData(), &status);
    return QString::number(status.st_mode & 0777U, 8);
}

} // namespace

/// Nobody but the owner of the database reads the key: not from its files, and not from what is printed.
class DatabaseSecrecyTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aNewDatabaseIsTheOwnersAlone_data();
    void aNewDatabaseIsTheOwnersAlone();
    void anExistingDatabaseIsClosedToOthers_data();
    void anExistingDatabaseIsClosedToOthers();
    void whatLiesBesideItIsClosedToOthers_data();
    void whatLiesBesideItIsClosedToOthers();
    void theJournalIsTheOwnersAloneWhileItExists();
    void aLinkedDatabaseIsClosedWhereItLies();
    void whatIsNoFileIsLeftAlone();
    void aFailedSaveDoesNotPrintTheKey_data();
    void aFailedSaveDoesNotPrintTheKey();
    void aKeyWithANulIsRefusedWholeAndNotPrinted();
};

void DatabaseSecrecyTest::aNewDatabaseIsTheOwnersAlone_data()
{
    QTest::addColumn<mode_t>("mask");
    QTest::newRow("with a usual mask") << mode_t{022};
    QTest::newRow("with no mask at all") << mode_t{0};
    QTest::newRow("with a strict mask") << mode_t{077};
}

void DatabaseSecrecyTest::aNewDatabaseIsTheOwnersAlone()
{
    QFETCH(const mode_t, mask);
    const mode_t former = umask(mask);
    {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, key, u"m"_s);
    }
    umask(former);
    QCOMPARE(modeOf(folder()), u"700"_s);
    QCOMPARE(modeOf(file()), u"600"_s);
}

void DatabaseSecrecyTest::anExistingDatabaseIsClosedToOthers_data()
{
    QTest::addColumn<mode_t>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("readable by all") << mode_t{0644} << u"600"_s;
    QTest::newRow("writable by all") << mode_t{0666} << u"600"_s;
    QTest::newRow("readable by the group") << mode_t{0640} << u"600"_s;
    QTest::newRow("everything allowed") << mode_t{0777} << u"600"_s;
    QTest::newRow("closed already") << mode_t{0600} << u"600"_s;
    QTest::newRow("only to be read") << mode_t{0444} << u"400"_s;
    QTest::newRow("only to be read, and closed") << mode_t{0400} << u"400"_s;
}

void DatabaseSecrecyTest::anExistingDatabaseIsClosedToOthers()
{
    QFETCH(const mode_t, before);
    QFETCH(const QString, after);
    {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, key, u"m"_s);
    }
    setMode(folder(), 0755);
    setMode(file(), before);
    start();
    QCOMPARE(modeOf(folder()), u"700"_s);
    QCOMPARE(modeOf(file()), after);
    QCOMPARE(sql("SELECT api_key FROM volc_config"), Rows{{key.toUtf8()}});
}

void DatabaseSecrecyTest::whatLiesBesideItIsClosedToOthers_data()
{
    QTest::addColumn<QString>("suffix");
    for (const char *suffix : {"-journal", "-wal", "-shm"}) {
        QTest::newRow(suffix) << QString::fromLatin1(suffix);
    }
}

void DatabaseSecrecyTest::whatLiesBesideItIsClosedToOthers()
{
    QFETCH(const QString, suffix);
    // As a program that was killed leaves it.
    samplePictures::write(file() + suffix, {});
    setMode(file() + suffix, 0644);
    QStringList modes;
    const QByteArray output = standardOutputOf([&] {
        const DatabaseManager database{folder(), covers()};
        modes.append(modeOf(file() + suffix));
    });
    QCOMPARE(output, QByteArray{});
    // Gone, or closed.
    QVERIFY2(modes == QStringList{u"0"_s} || modes == QStringList{u"600"_s}, qPrintable(modes.constFirst()));
}

void DatabaseSecrecyTest::theJournalIsTheOwnersAloneWhileItExists()
{
    const mode_t former = umask(0);
    const auto restore = qScopeGuard([former] { umask(former); });
    start();
    SqliteConnection connection{file()};
    connection.execute(u"BEGIN; UPDATE volc_config SET api_key = 'x';"_s);
    QCOMPARE(modeOf(file() + u"-journal"_s), u"600"_s);
    connection.execute(u"ROLLBACK;"_s);

    const QuickCommits quick{connection};
    connection.execute(u"UPDATE volc_config SET api_key = 'x';"_s);
    QCOMPARE(modeOf(file() + u"-wal"_s), u"600"_s);
}

void DatabaseSecrecyTest::aLinkedDatabaseIsClosedWhereItLies()
{
    const QString elsewhere = home->path(u"elsewhere.db"_s);
    samplePictures::write(elsewhere, {});
    setMode(elsewhere, 0644);
    QDir{}.mkpath(folder());
    QVERIFY(QFile::link(elsewhere, file()));
    start();
    QCOMPARE(modeOf(elsewhere), u"600"_s);
    QVERIFY(QFileInfo{file()}.isSymLink());
}

void DatabaseSecrecyTest::whatIsNoFileIsLeftAlone()
{
    QDir{}.mkpath(file());
    setMode(file(), 0755);
    QVERIFY(start().startsWith("无法打开数据库: "));
    QCOMPARE(modeOf(file()), u"755"_s);
}

void DatabaseSecrecyTest::aFailedSaveDoesNotPrintTheKey_data()
{
    QTest::addColumn<QByteArray>("damage");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("no table") << QByteArray{"DROP TABLE volc_config"}
                              << QByteArray{"SQL 错误: no such table: volc_config\n"};
    QTest::newRow("no column") << QByteArray{"ALTER TABLE volc_config RENAME COLUMN api_key TO k"}
                               << QByteArray{"SQL 错误: table volc_config has no column named api_key\n"};
    QTest::newRow("a rule against it")
        << QByteArray{"CREATE TRIGGER t BEFORE INSERT ON volc_config BEGIN SELECT RAISE(ABORT, 'no'); END"}
        << QByteArray{"SQL 错误: no\n"};
}

void DatabaseSecrecyTest::aFailedSaveDoesNotPrintTheKey()
{
    QFETCH(const QByteArray, damage);
    QFETCH(const QByteArray, line);
    start();
    std::optional<DatabaseManager> database;
    database.emplace(folder(), covers());
    sql(damage);
    const QByteArray output =
        standardOutputOf([&] { database->saveConfig(u"https://a"_s, key, u"it's a model"_s); });
    QCOMPARE(output, line);
}

void DatabaseSecrecyTest::aKeyWithANulIsRefusedWholeAndNotPrinted()
{
    for (const QString &cut :
         QStringList{key + QChar::Null, key + QChar::Null + u"more"_s, QChar::Null + key}) {
        std::optional<DatabaseManager> database;
        database.emplace(folder(), covers());
        database->saveConfig(u"https://a"_s, u"former"_s, u"m"_s);
        const QByteArray output =
            standardOutputOf([&] { database->saveConfig(u"https://b"_s, cut, u"n"_s); });
        QCOMPARE(output, QByteArray{"SQL 错误: unrecognized token: \"'\"\n"});
        QCOMPARE(database->getConfig().apiKey, u"former"_s);
        QCOMPARE(database->getConfig().apiURL, u"https://a"_s);
    }
}

QTEST_GUILESS_MAIN(DatabaseSecrecyTest)
#include "DatabaseSecrecyTest.moc"
