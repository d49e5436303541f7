#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QTest>

#include <fcntl.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

/// Which entries of the folder of covers are adopted, and that their names are kept to the letter.
class OrphanNamesTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
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
        const auto outcome = childProcess::run([this] {
            const DatabaseManager database{folder(), covers()};
        });
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
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
    QByteArray pathOf(const QByteArray &name) const { return QFile::encodeName(covers()) + '/' + name; }
};

QUILMORA_TEST(OrphanNamesTest, runCoreTest)
#include "OrphanNamesTest.moc"
