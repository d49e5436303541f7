#include "platform/UserFolders.h"

#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class UserFoldersTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFoldersLieInTheHome()
    {
        const TemporaryHome home;
        QCOMPARE(userFolders::home(), home.path());
        QCOMPARE(userFolders::pictures(), home.path() + u"/Pictures"_s);
        QVERIFY(userFolders::applicationSupport().startsWith(home.path() + u'/'));
        QVERIFY(!userFolders::applicationSupport().endsWith(u'/'));
    }

    void theApplicationSupportFolderCarriesNoProgramName()
    {
        const TemporaryHome home;
        const QString plain = userFolders::applicationSupport();
        QCoreApplication::setApplicationName(u"somename"_s);
        QCoreApplication::setOrganizationName(u"someorganisation"_s);
        QCOMPARE(userFolders::applicationSupport(), plain);
#ifdef Q_OS_LINUX
        QCOMPARE(plain, home.path(u".local/share"_s));
        qputenv("XDG_DATA_HOME", home.path(u"elsewhere"_s).toUtf8());
        QCOMPARE(userFolders::applicationSupport(), home.path(u"elsewhere"_s));
        qunsetenv("XDG_DATA_HOME");
#endif
    }

    void aPicturesFolderOfAnotherNameIsNotUsed()
    {
        const TemporaryHome home;
        QVERIFY(QDir{}.mkpath(home.path(u".config"_s)));
        QVERIFY(QDir{}.mkpath(home.path(u"图片"_s)));
        QFile names{home.path(u".config/user-dirs.dirs"_s)};
        QVERIFY(names.open(QIODevice::WriteOnly));
        names.write("XDG_PICTURES_DIR=\"$HOME/图片\"\n");
        names.close();
        QCOMPARE(userFolders::pictures(), home.path(u"Pictures"_s));
    }

    void aLeadingTildeIsTheHome_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("inHome"); // Null where the path stays as it is.
        QTest::newRow("a cover") << u"~/Pictures/Quilmora/coverimg/a.png"_s
                                 << u"/Pictures/Quilmora/coverimg/a.png"_s;
        QTest::newRow("alone") << u"~"_s << u""_s;
        QTest::newRow("with a slash") << u"~/"_s << u"/"_s;
        QTest::newRow("Chinese, quotes, emoji") << u"~/封面 'a' \"😀\".png"_s << u"/封面 'a' \"😀\".png"_s;
        QTest::newRow("only the first") << u"~/a/~/b"_s << u"/a/~/b"_s;
        QTest::newRow("absolute") << u"/tmp/~/a.png"_s << QString{};
        QTest::newRow("relative") << u"a~.png"_s << QString{};
        QTest::newRow("another user") << u"~somebody/a.png"_s << QString{};
        QTest::newRow("after a blank") << u" ~/a.png"_s << QString{};
        QTest::newRow("empty") << u""_s << QString{};
    }

    void aLeadingTildeIsTheHome()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, inHome);
        const TemporaryHome home;
        QCOMPARE(userFolders::expandTilde(path), inHome.isNull() ? path : home.path() + inHome);
    }
};

QUILMORA_TEST(UserFoldersTest, runCoreTest)
#include "UserFoldersTest.moc"
