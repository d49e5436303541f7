#include "StoreFixture.h"
#include "store/ImageStorageService.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTest>
#include <QtEndian>

#include <filesystem>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

class OrphanBackfillTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void anAddedRowHasTheFixedPromptAndNoModel()
    {
        addCover(u"x.png"_s);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT id, prompt, image_path, typeof(created_at), model_id FROM history"),
                 (Rows{{"1", "(历史图片，已自动补录)", stored("x.png"), "real", ""}}));
    }

    void aKnownCoverIsNotAddedAgainUntilItsRowIsDeleted()
    {
        start();
        const QString path = addCover(u"x.png"_s);
        sql("INSERT INTO history VALUES (7, 'p', '" + stored("x.png") + "', 1.0, 'm')");
        QCOMPARE(standardOutputOf([this] { open(); }), QByteArray{});
        QCOMPARE(history(), (Rows{{"7", "p", stored("x.png"), "1.0", "m"}}));
        m_database->deleteHistory(7);
        QVERIFY(m_database->fetchAllHistory().isEmpty());
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT prompt, image_path, model_id FROM history"),
                 (Rows{{"(历史图片，已自动补录)", stored("x.png"), ""}}));
        QVERIFY(storedTime("x.png") == timeOf(path));
    }

    void aSavedCoverIsKnown()
    {
        open();
        const auto path = ImageStorageService{covers()}.saveImage(samplePictures::picture({8, 8}));
        QVERIFY(path.has_value());
        m_database->insertHistory(u"p"_s, *path, u"m"_s);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT prompt FROM history"), (Rows{{"p"}}));
    }

    void aFileIsDatedByItsCreationNotByItsLastChange()
    {
        constexpr qint64 lastChange = 981173106789;
        const QString path = addCover(u"x.png"_s);
        QFile cover{path};
        QVERIFY(cover.open(QIODevice::ReadWrite));
        QVERIFY(
            cover.setFileTime(QDateTime::fromMSecsSinceEpoch(lastChange), QFileDevice::FileModificationTime));
        cover.close();
        QCOMPARE(start(), QByteArray{});
        QVERIFY(storedTime("x.png") == timeOf(path));
        QVERIFY(QFileInfo{path}.birthTime().isValid() == (storedTime("x.png") != 981173106.789));
    }

    void aFileWithoutATimeOfCreationIsDatedByItsLastChange()
    {
        // A file of the system that keeps no time of creation stands behind a link.
        const QString target = u"/proc/self/stat"_s;
        const double before = timeOf(target);
        if (QFileInfo{target}.birthTime().isValid() || !QFileInfo{target}.lastModified().isValid()) {
            QSKIP("No file without a time of creation is at hand");
        }
        QVERIFY(QDir{}.mkpath(covers()));
        QVERIFY(QFile::link(target, covers() + u"/x.png"_s));
        QCOMPARE(start(), QByteArray{});
        // The system may make the file anew meanwhile, but seldom does.
        QVERIFY(before <= storedTime("x.png") && storedTime("x.png") <= timeOf(target));
    }

    void aLinkToNothingIsDatedNow_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("a file that has gone") << QByteArray{"gone.png"};
        QTest::newRow("itself") << QByteArray{"x.png"};
    }

    void aLinkToNothingIsDatedNow()
    {
        QFETCH(const QByteArray, target);
        QVERIFY(QDir{}.mkpath(covers()));
        const QByteArray link = QFile::encodeName(covers() + u"/x.png"_s);
        QCOMPARE(symlink(target.constData(), link.constData()), 0);
        const Timestamp before = now();
        QCOMPARE(standardOutputOf([this] { open(); }), QByteArray{});
        const Timestamp after = now();
        const QList<HistoryRecord> records = m_database->fetchAllHistory();
        QCOMPARE(records.size(), 1);
        QVERIFY(before <= records.constFirst().createdAt && records.constFirst().createdAt <= after);
    }

    void onlyTheHomeRelativeFormIsKnown_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("absolute") << QByteArray{};
        QTest::newRow("a slash too many") << stored("/x.png");
        QTest::newRow("in capitals") << stored("X.PNG");
        QTest::newRow("a blank behind") << stored("x.png ");
        QTest::newRow("the name alone") << QByteArray{"x.png"};
        QTest::newRow("empty") << QByteArray{""};
    }

    void onlyTheHomeRelativeFormIsKnown()
    {
        QFETCH(const QByteArray, path);
        start();
        const QByteArray absolute = addCover(u"x.png"_s).toUtf8();
        sql("INSERT INTO history VALUES (1, 'p', '" + (path.isNull() ? absolute : path) + "', 1.0, 'm')");
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT image_path FROM history WHERE id = 2"), (Rows{{stored("x.png")}}));
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(history().size(), 2);
    }

    void aKnownPathMayBeStoredAsBytes()
    {
        start();
        addCover(u"封.png"_s);
        sql("INSERT INTO history VALUES (1, 'p', CAST('" + stored("封.png") + "' AS BLOB), 1.0, 'm')");
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(history().size(), 1);
    }

    void theOrderIsThatOfTheFolderAndLaterStartsAddNothing()
    {
        for (int number = 0; number < 40; ++number) {
            addCover(u"封面 '%1' 😀.png"_s.arg((number * 17) % 40));
        }
        QByteArrayList listed;
        for (const auto &entry : std::filesystem::directory_iterator{covers().toStdString()}) {
            listed.append(stored(QByteArray::fromStdString(entry.path().filename().string())));
        }
        QCOMPARE(start(), QByteArray{});
        QByteArrayList added;
        for (const databaseFile::Row &row : history()) {
            added.append(row.at(2));
        }
        QCOMPARE(added, listed);
        const Rows before = everything();
        for (int time = 0; time < 3; ++time) {
            QCOMPARE(start(), QByteArray{});
            QCOMPARE(everything(), before);
        }
    }

    void aFileThatAppearsIsAddedAtTheNextStart()
    {
        addCover(u"a.png"_s);
        start();
        addCover(u"b.png"_s);
        QVERIFY(QFile::remove(covers() + u"/a.png"_s));
        QCOMPARE(start(), QByteArray{});
        // The row of a file that has gone stays.
        QCOMPARE(paths(), (QByteArrayList{stored("a.png"), stored("b.png")}));
    }

    void manyCoversAreNotWaitedForOneByOne()
    {
        start();
        constexpr int count = 250;
        for (int number = 0; number < count; ++number) {
            addCover(u"%1.png"_s.arg(number));
        }
        const quint32 before = writeCount();
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(history().size(), count);
        QVERIFY(writeCount() - before < 10);
        QCOMPARE(QDir{folder()}.entryList(QDir::Files | QDir::Hidden), QStringList{u"quilmora.db"_s});
        QCOMPARE(sql("PRAGMA journal_mode"), Rows{{"delete"}});
    }

    void theSharedInstanceAdoptsTheUsersCovers()
    {
        const QImage picture = samplePictures::picture({64, 48});
        samplePictures::write(covers() + u"/x.png"_s, samplePictures::png(picture));
        const auto outcome = childProcess::run([&] {
            const QList<HistoryRecord> records = DatabaseManager::shared().fetchAllHistory();
            _exit(records.size() == 1 && records.constFirst().image() == picture ? 0 : 1);
        });
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
    }

private:
    /// SQLite's count of the changes to the database file.
    quint32 writeCount() const
    {
        constexpr qint64 offset = 24;
        QFile database{file()};
        if (!database.open(QIODevice::ReadOnly) || !database.seek(offset)) {
            qFatal("Cannot read the database file");
        }
        return qFromBigEndian<quint32>(database.read(sizeof(quint32)).constData());
    }

    /// When the file was made, as far as its file system knows.
    static double timeOf(const QString &path)
    {
        const QFileInfo info{path};
        const QDateTime time = info.birthTime().isValid() ? info.birthTime() : info.lastModified();
        return static_cast<double>(time.toMSecsSinceEpoch()) / 1000.0;
    }

    double storedTime(const QByteArray &name) const
    {
        const QByteArray select = "SELECT printf('%.3f', created_at) FROM history WHERE image_path = '";
        return databaseFile::value(file(), select + stored(name) + '\'').toDouble();
    }
};

QUILMORA_TEST(OrphanBackfillTest, runCoreTest)
#include "OrphanBackfillTest.moc"
