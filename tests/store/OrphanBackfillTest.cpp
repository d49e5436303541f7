#include "StoreFixture.h"
#include "store/ImageStorageService.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QFileInfo>
#include <QtEndian>

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

/// Which entries of the folder of covers are adopted, and that their names are kept to the letter.
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
        const DataRows<QByteArray> row{"path"};
        row("absolute", {});
        row("a slash too many", stored("/x.png"));
        row("in capitals", stored("X.PNG"));
        row("a blank behind", stored("x.png "));
        row("the name alone", "x.png");
        row("empty", "");
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
        QCOMPARE(outcome, childProcess::succeeded());
    }

    void aNameIsKeptAsItIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("hidden") << u".a.png"_s;
        QTest::newRow("nothing but the ending") << u".png"_s;
        QTest::newRow("dots") << u"...png"_s;
        QTest::newRow("capitals") << u"A.PNG"_s;
        QTest::newRow("one capital") << u"w.pNg"_s;
        QTest::newRow("two endings") << u"a.jpg.png"_s;
        QTest::newRow("an apostrophe") << u"it's.png"_s;
        QTest::newRow("nothing but apostrophes") << u"'''.png"_s;
        QTest::newRow("an end of statement") << u"', 1.0, ''); DROP TABLE history; --.png"_s;
        QTest::newRow("double quotes and backslashes") << u"\"a\" \\n.png"_s;
        QTest::newRow("what patterns escape") << u"100% _ %1 ? * [a-z] :a.png"_s;
        QTest::newRow("blanks at the ends") << u"  a .png"_s;
        QTest::newRow("a line break and a tab") << u"a\nb\tc.png"_s;
        QTest::newRow("Chinese") << u"封面「一」.png"_s;
        QTest::newRow("emoji") << u"😀👩‍👩‍👧🇨🇳.png"_s;
        QTest::newRow("right to left") << u"שלום.png"_s;
        QTest::newRow("a letter whose small form is longer") << u"İ.PNG"_s;
        QTest::newRow("a tilde") << u"~.png"_s;
        QTest::newRow("as long as names may be") << QString{251, u'a'} + u".png"_s;
    }

    void aNameIsKeptAsItIs()
    {
        QFETCH(const QString, name);
        addCover(name);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(paths(), QByteArrayList{stored(name.toUtf8())});
        const Rows before = everything();
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(everything(), before);
    }

    void otherEndingsAreNotAdopted()
    {
        // No dot, none at all, blanks and line breaks behind, longer endings, characters of full width,
        // another format.
        for (const QString &name : {u"apng"_s, u"png"_s, u"a.png "_s, u"a.png\n"_s, u"a.png.part"_s,
                                    u"a.pngx"_s, u"a．png"_s, u"a.ｐｎｇ"_s, u"a.jpg"_s}) {
            addCover(name);
        }
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(paths().join('\n'), QByteArray{});
    }

    void entriesOfEveryKindAreAdoptedByTheirNames()
    {
        samplePictures::write(covers() + u"/empty.png"_s, {});
        samplePictures::write(covers() + u"/folder.png/not entered.png"_s, "x");
        samplePictures::write(covers() + u"/sub/not entered.png"_s, "x");
        QVERIFY(QDir{}.mkpath(covers() + u"/.hidden folder.PNG"_s));
        QCOMPARE(symlink("nowhere", pathOf("dangling.png").constData()), 0);
        QCOMPARE(symlink("endless.png", pathOf("endless.png").constData()), 0);
        QCOMPARE(symlink("folder.png", pathOf("link.png").constData()), 0);
        QCOMPARE(mkfifo(pathOf("pipe.png").constData(), 0600), 0);
        setMode(addCover(u"closed.png"_s), 0);
        // Opening the pipe would hang.
        QCOMPARE(startInChild(), childProcess::succeeded());
        QByteArrayList expected;
        for (const char *name : {".hidden folder.PNG", "closed.png", "dangling.png", "empty.png",
                                 "endless.png", "folder.png", "link.png", "pipe.png"}) {
            expected.append(stored(name));
        }
        QCOMPARE(paths(), expected);
    }

    void namesThatOnlyLookAlikeAreTwoCovers()
    {
        // One letter, and a letter with an accent after it.
        const QByteArray composed = "\xc3\xa9.png";
        const QByteArray decomposed = "e\xcc\x81.png";
        addCover(QString::fromUtf8(composed));
        addCover(QString::fromUtf8(decomposed));
        if (QDir{covers()}.entryList(QDir::Files).size() != 2) {
            QSKIP("The file system takes them for one");
        }
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(paths(), (QByteArrayList{stored(decomposed), stored(composed)}));
    }

    void aNameThatIsNotUtf8IsSkipped()
    {
        addCover(u"a.png"_s);
        const int descriptor =
            ::open(pathOf("\xff\xfe'.png").constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        if (descriptor < 0) {
            QSKIP("The file system has no such names");
        }
        ::close(descriptor);
        addCover(u"b.png"_s);
        for (int time = 0; time < 2; ++time) {
            QCOMPARE(start(), QByteArray{});
            QCOMPARE(paths(), (QByteArrayList{stored("a.png"), stored("b.png")}));
        }
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

    QByteArray pathOf(const QByteArray &name) const { return QFile::encodeName(covers()) + '/' + name; }
};

QUILMORA_TEST(OrphanBackfillTest, runCoreTest)
#include "OrphanBackfillTest.moc"
