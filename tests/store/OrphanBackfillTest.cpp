#include "StoreFixture.h"
#include "store/ImageStorageService.h"

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
    void endingsInAnyCaseAreAddedAndOtherFilesAreNot();
    void anAddedRowHasTheFixedPromptAndNoModel();
    void aKnownCoverIsNotAddedAgain();
    void aDeletedRowComesBackAtTheNextStart();
    void aSavedCoverIsKnown();
    void aMissingFolderAddsNothingAndSaysNothing();
    void aFileIsDatedByItsCreationNotByItsLastChange();
    void aFileWithoutATimeOfCreationIsDatedByItsLastChange();
    void aLinkToNothingIsDatedNow_data();
    void aLinkToNothingIsDatedNow();
    void onlyTheHomeRelativeFormIsKnown_data();
    void onlyTheHomeRelativeFormIsKnown();
    void aKnownPathMayBeKeptAsBytes();
    void repeatedStartsAddNothing();
    void theOrderIsThatOfTheFolder();
    void aFileThatAppearsIsAddedAtTheNextStart();
    void manyCoversAreNotWaitedForOneByOne();
    void theSharedInstanceAdoptsTheUsersCovers();

private:
    /// How often the database file was written to as a whole, by its own count.
    quint32 writeCount() const
    {
        constexpr qint64 place = 24;
        QFile database{file()};
        if (!database.open(QIODevice::ReadOnly) || !database.seek(place)) {
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
        return sql("SELECT printf('%.3f', created_at) FROM history WHERE image_path = '" + stored(name) + "'")
            .constFirst()
            .constFirst()
            .toDouble();
    }
};

void OrphanBackfillTest::endingsInAnyCaseAreAddedAndOtherFilesAreNot()
{
    for (const QString &name : {u"x.png"_s, u"y.PNG"_s, u"z.jpg"_s, u"w.pNg"_s}) {
        addCover(name);
    }
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(paths(), (QByteArrayList{stored("w.pNg"), stored("x.png"), stored("y.PNG")}));
}

void OrphanBackfillTest::anAddedRowHasTheFixedPromptAndNoModel()
{
    addCover(u"x.png"_s);
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(sql("SELECT id, prompt, image_path, typeof(created_at), model_id FROM history"),
             (Rows{{"1", "(历史图片，已自动补录)", stored("x.png"), "real", ""}}));
}

void OrphanBackfillTest::aKnownCoverIsNotAddedAgain()
{
    start();
    addCover(u"x.png"_s);
    sql("INSERT INTO history VALUES (7, 'p', '" + stored("x.png") + "', 1.0, 'm')");
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(history(), (Rows{{"7", "p", stored("x.png"), "1.0", "m"}}));
}

void OrphanBackfillTest::aDeletedRowComesBackAtTheNextStart()
{
    start();
    const QString path = addCover(u"x.png"_s);
    sql("INSERT INTO history VALUES (7, 'p', '" + stored("x.png") + "', 1.0, 'm')");
    {
        DatabaseManager database{folder(), covers()};
        database.deleteHistory(7);
        QVERIFY(database.fetchAllHistory().isEmpty());
    }
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(sql("SELECT prompt, image_path, model_id FROM history"),
             (Rows{{"(历史图片，已自动补录)", stored("x.png"), ""}}));
    QVERIFY(storedTime("x.png") == timeOf(path));
}

void OrphanBackfillTest::aSavedCoverIsKnown()
{
    {
        ImageStorageService storage{covers()};
        DatabaseManager database{folder(), covers()};
        const auto path = storage.saveImage(samplePictures::picture({8, 8}));
        QVERIFY(path.has_value());
        database.insertHistory(u"p"_s, *path, u"m"_s);
    }
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(sql("SELECT prompt FROM history"), (Rows{{"p"}}));
}

void OrphanBackfillTest::aMissingFolderAddsNothingAndSaysNothing()
{
    QCOMPARE(start(), QByteArray{});
    QVERIFY(history().isEmpty());
    QVERIFY(!QFileInfo::exists(home->path(u"Pictures"_s)));
}

void OrphanBackfillTest::aFileIsDatedByItsCreationNotByItsLastChange()
{
    constexpr qint64 lastChange = 981173106789;
    const QString path = addCover(u"x.png"_s);
    QFile cover{path};
    QVERIFY(cover.open(QIODevice::ReadWrite));
    QVERIFY(cover.setFileTime(QDateTime::fromMSecsSinceEpoch(lastChange), QFileDevice::FileModificationTime));
    cover.close();
    QCOMPARE(start(), QByteArray{});
    QVERIFY(storedTime("x.png") == timeOf(path));
    QVERIFY(QFileInfo{path}.birthTime().isValid() == (storedTime("x.png") != 981173106.789));
}

void OrphanBackfillTest::aFileWithoutATimeOfCreationIsDatedByItsLastChange()
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

void OrphanBackfillTest::aLinkToNothingIsDatedNow_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("a file that has gone") << u"gone.png"_s;
    QTest::newRow("itself") << u"x.png"_s;
}

void OrphanBackfillTest::aLinkToNothingIsDatedNow()
{
    QFETCH(const QString, target);
    QVERIFY(QDir{}.mkpath(covers()));
    QCOMPARE(symlink(target.toUtf8().constData(), QFile::encodeName(covers() + u"/x.png"_s).constData()), 0);
    const PointInTime before = now();
    QCOMPARE(start(), QByteArray{});
    const PointInTime after = now();
    DatabaseManager database{folder(), covers()};
    const QList<HistoryRecord> records = database.fetchAllHistory();
    QCOMPARE(records.size(), 1);
    QVERIFY(before <= records.constFirst().createdAt && records.constFirst().createdAt <= after);
}

void OrphanBackfillTest::onlyTheHomeRelativeFormIsKnown_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("absolute") << QByteArray{};
    QTest::newRow("a slash too many") << stored("/x.png");
    QTest::newRow("in capitals") << stored("X.PNG");
    QTest::newRow("a blank behind") << stored("x.png ");
    QTest::newRow("the name alone") << QByteArray{"x.png"};
    QTest::newRow("empty") << QByteArray{""};
}

void OrphanBackfillTest::onlyTheHomeRelativeFormIsKnown()
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

void OrphanBackfillTest::aKnownPathMayBeKeptAsBytes()
{
    start();
    addCover(u"封.png"_s);
    sql("INSERT INTO history VALUES (1, 'p', CAST('" + stored("封.png") + "' AS BLOB), 1.0, 'm')");
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(history().size(), 1);
}

void OrphanBackfillTest::repeatedStartsAddNothing()
{
    for (int number = 0; number < 20; ++number) {
        addCover(u"封面 '%1' 😀.png"_s.arg(number));
    }
    QCOMPARE(start(), QByteArray{});
    const Rows before = everything();
    QCOMPARE(history().size(), 20);
    for (int time = 0; time < 3; ++time) {
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(everything(), before);
    }
}

void OrphanBackfillTest::theOrderIsThatOfTheFolder()
{
    for (int number = 0; number < 40; ++number) {
        addCover(u"%1.png"_s.arg((number * 17) % 40));
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
}

void OrphanBackfillTest::aFileThatAppearsIsAddedAtTheNextStart()
{
    addCover(u"a.png"_s);
    start();
    addCover(u"b.png"_s);
    QVERIFY(QFile::remove(covers() + u"/a.png"_s));
    QCOMPARE(start(), QByteArray{});
    // The row of a file that has gone stays.
    QCOMPARE(paths(), (QByteArrayList{stored("a.png"), stored("b.png")}));
}

void OrphanBackfillTest::manyCoversAreNotWaitedForOneByOne()
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
    QCOMPARE(databaseFile::value(file(), "PRAGMA journal_mode"), QByteArray{"delete"});
}

void OrphanBackfillTest::theSharedInstanceAdoptsTheUsersCovers()
{
    const QImage picture = samplePictures::picture({64, 48});
    samplePictures::write(home->path(u"Pictures/Quilmora/coverimg/x.png"_s), samplePictures::png(picture));
    const auto outcome = childProcess::run([&] {
        const QList<HistoryRecord> records = DatabaseManager::shared().fetchAllHistory();
        _exit(records.size() == 1 && records.constFirst().image() == picture ? 0 : 1);
    });
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.standardOutput, QByteArray{});
}

QTEST_GUILESS_MAIN(OrphanBackfillTest)
#include "OrphanBackfillTest.moc"
