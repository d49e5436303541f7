#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QFileInfo>
#include <QTest>

#include <functional>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

using Replace = std::function<void(const QString &path)>;

} // namespace

/// The database or its folder is removed or replaced while the store is in use: what fails is reported, what
/// was put there is kept, and once everything is back nothing is missing.
class VanishedStoreTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        StoreFixture::init();
        start();
        sql("UPDATE volc_config SET api_key = 'former'; INSERT INTO history VALUES (1, 'p', '" +
            stored("a.png") + "', 1.0, 'm')");
        addCover(u"a.png"_s);
    }

    void withoutItsDatabaseTheStoreGoesOn_data()
    {
        QTest::addColumn<Replace>("replace");
        QTest::newRow("gone") << Replace{[](const QString &) {
        }};
        QTest::newRow("an empty file") << Replace{[](const QString &path) {
            samplePictures::write(path, {});
        }};
        QTest::newRow("another program's file") << Replace{[](const QString &path) {
            samplePictures::write(path, "somebody's");
        }};
        QTest::newRow("a folder") << Replace{[](const QString &path) {
            QDir{}.mkpath(path);
        }};
        QTest::newRow("a pipe") << Replace{[](const QString &path) {
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        }};
    }

    void withoutItsDatabaseTheStoreGoesOn()
    {
        QFETCH(const Replace, replace);
        const Rows before = everything();
        const QString aside = file() + u".aside"_s;
        const auto outcome = useAfter([&] {
            QFile::rename(file(), aside);
            replace(file());
        });
        QCOMPARE(outcome.signal, 0);
        // Reported rather than written where nobody finds it.
        QCOMPARE(outcome.standardOutput,
                 QByteArray{"SQL 错误: attempt to write a readonly database\n"}.repeated(3));
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

    void withoutItsFolderTheStoreGoesOn()
    {
        const Rows before = everything();
        const QString aside = folder() + u".aside"_s;
        const auto outcome = useAfter([&] { QDir{}.rename(folder(), aside); });
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(errorCount(outcome.standardOutput), 3);
        QVERIFY(!QFileInfo::exists(folder()));
        QVERIFY(QDir{}.rename(aside, folder()));
        QCOMPARE(everything(), before);
    }

private:
    /// Opens the store, lets `change` happen, and tries every operation, all in a child process.
    childProcess::Outcome useAfter(const std::function<void()> &change) const
    {
        return childProcess::run([&] {
            DatabaseManager database{folder(), covers()};
            change();
            database.saveConfig(u"https://a"_s, u"new"_s, u"m"_s);
            database.insertHistory(u"new"_s, u"~/a.png"_s, u"m"_s);
            database.deleteHistory(1);
            database.fetchAllHistory();
            database.getConfig();
        });
    }
};

QUILMORA_TEST(VanishedStoreTest, runCoreTest)
#include "VanishedStoreTest.moc"
