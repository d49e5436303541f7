#include "StoreFixture.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

/// Which entries of the folder of covers are adopted, and that their names are kept to the letter.
class OrphanNamesTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aNameIsKeptAsItIs_data();
    void aNameIsKeptAsItIs();
    void anotherEndingIsNotAdopted_data();
    void anotherEndingIsNotAdopted();
    void entriesOfEveryKindAreAdoptedByTheirNames();
    void foldersAreNotEntered();
    void namesThatOnlyLookAlikeAreTwoCovers();
    void aNameThatIsNoTextIsPassedOver();

private:
    QByteArray place(const QByteArray &name) const { return QFile::encodeName(covers()) + '/' + name; }
};

void OrphanNamesTest::aNameIsKeptAsItIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("hidden") << u".a.png"_s;
    QTest::newRow("nothing but the ending") << u".png"_s;
    QTest::newRow("dots") << u"...png"_s;
    QTest::newRow("capitals") << u"A.PNG"_s;
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

void OrphanNamesTest::aNameIsKeptAsItIs()
{
    QFETCH(const QString, name);
    addCover(name);
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(paths(), QByteArrayList{stored(name.toUtf8())});
    const Rows before = everything();
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(everything(), before);
}

void OrphanNamesTest::anotherEndingIsNotAdopted_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no dot") << u"apng"_s;
    QTest::newRow("png alone") << u"png"_s;
    QTest::newRow("a blank behind") << u"a.png "_s;
    QTest::newRow("a line break behind") << u"a.png\n"_s;
    QTest::newRow("a copy being written") << u"a.png.part"_s;
    QTest::newRow("a longer ending") << u"a.pngx"_s;
    QTest::newRow("a full stop of full width") << u"a．png"_s;
    QTest::newRow("letters of full width") << u"a.ｐｎｇ"_s;
    QTest::newRow("another format") << u"a.jpg"_s;
}

void OrphanNamesTest::anotherEndingIsNotAdopted()
{
    QFETCH(const QString, name);
    addCover(name);
    QCOMPARE(start(), QByteArray{});
    QVERIFY(history().isEmpty());
}

void OrphanNamesTest::entriesOfEveryKindAreAdoptedByTheirNames()
{
    samplePictures::write(covers() + u"/empty.png"_s, {});
    QVERIFY(QDir{}.mkpath(covers() + u"/folder.png"_s));
    QVERIFY(QDir{}.mkpath(covers() + u"/.hidden folder.PNG"_s));
    QCOMPARE(symlink("nowhere", place("dangling.png").constData()), 0);
    QCOMPARE(symlink("endless.png", place("endless.png").constData()), 0);
    QCOMPARE(symlink("folder.png", place("link.png").constData()), 0);
    QCOMPARE(mkfifo(place("pipe.png").constData(), 0600), 0);
    setMode(addCover(u"closed.png"_s), 0);
    // Whoever opened the pipe would hang.
    const auto outcome = childProcess::run([this] { const DatabaseManager database{folder(), covers()}; });
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.standardOutput, QByteArray{});
    QByteArrayList expected;
    for (const char *name : {".hidden folder.PNG", "closed.png", "dangling.png", "empty.png", "endless.png",
                             "folder.png", "link.png", "pipe.png"}) {
        expected.append(stored(name));
    }
    QCOMPARE(paths(), expected);
}

void OrphanNamesTest::foldersAreNotEntered()
{
    samplePictures::write(covers() + u"/sub/a.png"_s, "x");
    samplePictures::write(covers() + u"/sub.png/b.png"_s, "x");
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(paths(), QByteArrayList{stored("sub.png")});
}

void OrphanNamesTest::namesThatOnlyLookAlikeAreTwoCovers()
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

void OrphanNamesTest::aNameThatIsNoTextIsPassedOver()
{
    addCover(u"a.png"_s);
    const int descriptor = open(place("\xff\xfe'.png").constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
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

QTEST_GUILESS_MAIN(OrphanNamesTest)
#include "OrphanNamesTest.moc"
