#include "StoreFixture.h"
#include "store/ImageStorageService.h"

#include <QTest>

#include <functional>
#include <sys/stat.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace
{

using Change = std::function<void(const QString &path)>;

void moveAway(const QString &path)
{
    if (!QFile::rename(path, path + u".aside"_s)) {
        qFatal("Cannot move the file away");
    }
}

} // namespace

/// The database, or one of the two folders, goes or is replaced while the store is in use: what fails is
/// told, what was put there is kept, and once everything is back nothing is missing.
class VanishedStoreTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void withoutItsDatabaseTheStoreGoesOn_data();
    void withoutItsDatabaseTheStoreGoesOn();
    void withoutItsFolderTheStoreGoesOn();
    void withoutTheFolderOfCoversNothingIsRecorded_data();
    void withoutTheFolderOfCoversNothingIsRecorded();

private:
    void fill() const
    {
        start();
        sql("UPDATE volc_config SET api_key = 'former'; INSERT INTO history VALUES (1, 'p', '" +
            stored("a.png") + "', 1.0, 'm')");
        addCover(u"a.png"_s);
    }
    static void change(DatabaseManager &database)
    {
        database.saveConfig(u"https://a"_s, u"new"_s, u"m"_s);
        database.insertHistory(u"new"_s, u"~/a.png"_s, u"m"_s);
        database.deleteHistory(1);
    }
};

void VanishedStoreTest::withoutItsDatabaseTheStoreGoesOn_data()
{
    QTest::addColumn<Change>("replace");
    QTest::newRow("gone") << Change{[](const QString &) {
    }};
    QTest::newRow("an empty file") << Change{[](const QString &path) {
        samplePictures::write(path, {});
    }};
    QTest::newRow("another program's file") << Change{[](const QString &path) {
        samplePictures::write(path, "somebody's");
    }};
    QTest::newRow("a folder") << Change{[](const QString &path) {
        QDir{}.mkpath(path);
    }};
    QTest::newRow("a pipe") << Change{[](const QString &path) {
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    }};
}

void VanishedStoreTest::withoutItsDatabaseTheStoreGoesOn()
{
    QFETCH(const Change, replace);
    fill();
    const Rows before = everything();
    const auto outcome = childProcess::run([&] {
        DatabaseManager database{folder(), covers()};
        moveAway(file());
        replace(file());
        change(database);
        database.fetchAllHistory();
        database.getConfig();
    });
    QCOMPARE(outcome.signal, 0);
    // Told rather than written to where nobody finds it.
    QCOMPARE(outcome.standardOutput,
             QByteArray{"SQL 错误: attempt to write a readonly database\n"}.repeated(3));
    const QFileInfo put{file()};
    QVERIFY(!put.isFile() || put.size() == 0 || put.size() == 10);
    if (put.isDir()) {
        QDir{}.rmdir(file());
    }
    QFile::remove(file());
    QVERIFY(QFile::rename(file() + u".aside"_s, file()));
    QCOMPARE(everything(), before);
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(everything(), before);
}

void VanishedStoreTest::withoutItsFolderTheStoreGoesOn()
{
    fill();
    const Rows before = everything();
    const QString aside = folder() + u".aside"_s;
    const auto outcome = childProcess::run([&] {
        DatabaseManager database{folder(), covers()};
        if (!QDir{}.rename(folder(), aside)) {
            _exit(1);
        }
        change(database);
        database.fetchAllHistory();
    });
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.standardOutput.count("SQL 错误: "), 3);
    QCOMPARE(outcome.standardOutput.count('\n'), 3);
    QVERIFY(!QFileInfo::exists(folder()));
    QVERIFY(QDir{}.rename(aside, folder()));
    QCOMPARE(everything(), before);
}

void VanishedStoreTest::withoutTheFolderOfCoversNothingIsRecorded_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("gone") << Change{moveAway} << QByteArray{"No such file or directory"};
    QTest::newRow("a file") << Change{[](const QString &path) {
        moveAway(path);
        samplePictures::write(path, "somebody's");
    }} << QByteArray{"Not a directory"};
    QTest::newRow("read-only") << Change{[](const QString &path) {
        setMode(path, 0555);
    }} << QByteArray{"Permission denied"};
}

void VanishedStoreTest::withoutTheFolderOfCoversNothingIsRecorded()
{
    QFETCH(const Change, change);
    QFETCH(const QByteArray, reason);
    fill();
    const Rows before = everything();
    setMode(folder(), 0777);
    setMode(home->path(u"Pictures/Quilmora"_s), 0777);
    const auto outcome = childProcess::run([&] {
        ImageStorageService storage{covers()};
        change(covers());
        childProcess::becomeOrdinaryUser();
        _exit(storage.saveImage(samplePictures::picture({50, 50})) ? 1 : 0);
    });
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.standardOutput, "保存图片失败: " + reason + '\n');
    QCOMPARE(everything(), before);
    const QString kept = QFileInfo::exists(covers() + u".aside"_s) ? covers() + u".aside"_s : covers();
    QCOMPARE(QDir{kept}.entryList(QDir::Files), QStringList{u"a.png"_s});
}

QTEST_GUILESS_MAIN(VanishedStoreTest)
#include "VanishedStoreTest.moc"
