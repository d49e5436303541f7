#include "platform/Files.h"

#include "platform/Console.h"
#include "support/ChildProcess.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <optional>
#include <sys/stat.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

QByteArray contents(const QString &path)
{
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{"(unreadable)"};
}

/// The error's text, or "written".
QString outcomeOf(const QString &path, const QByteArray &bytes)
{
    return writeFile(path, bytes).value_or(u"written"_s);
}

} // namespace

/// Where the files of the user lie, how they are written, and how changes of them are noticed.
class FilesTest final : public QObject
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
        // In the home: null where the path stays as it is.
        const DataRows<QString, QString> row{"path", "inHome"};
        row("a cover", u"~/Pictures/Quilmora/coverimg/a.png"_s, u"/Pictures/Quilmora/coverimg/a.png"_s);
        row("alone", u"~"_s, u""_s);
        row("with a slash", u"~/"_s, u"/"_s);
        row("Chinese, quotes, emoji", u"~/封面 'a' \"😀\".png"_s, u"/封面 'a' \"😀\".png"_s);
        row("only the first", u"~/a/~/b"_s, u"/a/~/b"_s);
        row("absolute", u"/tmp/~/a.png"_s, {});
        row("relative", u"a~.png"_s, {});
        row("another user", u"~somebody/a.png"_s, {});
        row("after a blank", u" ~/a.png"_s, {});
        row("empty", u""_s, {});
    }

    void aLeadingTildeIsTheHome()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, inHome);
        const TemporaryHome home;
        QCOMPARE(userFolders::expandTilde(path), inHome.isNull() ? path : home.path() + inHome);
    }

    void anUntouchedFileKeepsItsStamp()
    {
        samplePictures::write(m_path, "content");
        QVERIFY(fileFingerprint(m_path).has_value());
        QCOMPARE(fileFingerprint(m_path)->bytes, 7);
        QVERIFY(fileFingerprint(m_path) == fileFingerprint(m_path));
    }

    void anotherFileOfTheSameNameSizeAndTimeHasAnotherStamp()
    {
        samplePictures::write(m_path, "content");
        setTime(m_path);
        const auto before = fileFingerprint(m_path);
        const QString other = samplePictures::write(m_home.path(u"other"_s), "CONTENT");
        setTime(other);
        QVERIFY(QFile::remove(m_path));
        QVERIFY(QFile::rename(other, m_path));
        QCOMPARE(fileFingerprint(m_path)->modified, before->modified);
        QCOMPARE(fileFingerprint(m_path)->bytes, before->bytes);
        QVERIFY(fileFingerprint(m_path) != before);
    }

    void otherContentOfTheSameSizeAndTimeGivesAnotherStamp()
    {
        samplePictures::write(m_path, "content");
        setTime(m_path);
        const auto before = fileFingerprint(m_path);
        // The clock of some file systems ticks in steps of milliseconds.
        QTRY_VERIFY([&] {
            samplePictures::write(m_path, "CONTENT");
            setTime(m_path);
            return fileFingerprint(m_path) != before;
        }());
        QCOMPARE(fileFingerprint(m_path)->modified, before->modified);
    }

    void otherRightsGiveAnotherStamp()
    {
        samplePictures::write(m_path, "content");
        const auto before = fileFingerprint(m_path);
        QTRY_VERIFY([&] {
            return QFile::setPermissions(m_path, QFile::ReadOwner) && fileFingerprint(m_path) != before;
        }());
    }

    void onlyRegularFilesHaveOne()
    {
        QVERIFY(!fileFingerprint({}));
        QVERIFY(!fileFingerprint(m_home.path()));
        QVERIFY(!fileFingerprint(m_home.path(u"missing"_s)));
        QVERIFY(!fileFingerprint(u"/dev/zero"_s));
        const QString pipe = m_home.path(u"pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!fileFingerprint(pipe));
    }

    void aLinkHasTheStampOfItsFile()
    {
        const QString file = samplePictures::write(m_home.path(u"target"_s), "content");
        const QString link = m_home.path(u"link"_s);
        QVERIFY(QFile::link(file, link));
        QVERIFY(fileFingerprint(link) == fileFingerprint(file));
        const QString dangling = m_home.path(u"dangling"_s);
        QVERIFY(QFile::link(m_home.path(u"nothing"_s), dangling));
        QVERIFY(!fileFingerprint(dangling));
    }

    void init() { m_folder.emplace(); }

    void theBytesAreWrittenAsTheyAre_data()
    {
        const DataRows<QString, QByteArray> row{"name", "bytes"};
        row("plain", u"a.png"_s, QByteArray{"\x89PNG\r\n\x1a\n\0\0", 10});
        row("empty", u"a.png"_s, "");
        row("large", u"a.png"_s, QByteArray(5000000, 'x'));
        row("Chinese, quotes, emoji", u"封面 'a' \"b\" 😀.png"_s, "x");
    }

    void theBytesAreWrittenAsTheyAre()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        const QString path = m_folder->filePath(name);
        QCOMPARE(outcomeOf(path, bytes), u"written"_s);
        QVERIFY(contents(path) == bytes);
    }

    void anExistingFileIsReplaced()
    {
        const QString path = m_folder->filePath(u"a"_s);
        QCOMPARE(outcomeOf(path, "a long former text"), u"written"_s);
        QCOMPARE(outcomeOf(path, "new"), u"written"_s);
        QCOMPARE(contents(path), QByteArray{"new"});
    }

    void aMissingFolderAndAFolderInPlaceOfTheFileAreErrors()
    {
        QCOMPARE(outcomeOf(m_folder->filePath(u"missing/a.png"_s), "x"), u"No such file or directory"_s);
        QVERIFY(!QFileInfo::exists(m_folder->filePath(u"missing"_s)));
        const QString error = outcomeOf(m_folder->path(), "x");
        QVERIFY2(error.contains(u"director"_s), qPrintable(error));
        QVERIFY(QFileInfo{m_folder->path()}.isDir());
    }

    void aReadOnlyFolderIsAnError()
    {
        QFile::setPermissions(m_folder->path(),
                              QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
        const auto outcome = childProcess::run([this] {
            childProcess::becomeOrdinaryUser();
            console::printLine(outcomeOf(m_folder->filePath(u"a.png"_s), "x"));
        });
        QCOMPARE(outcome.standardOutput, QByteArray{"Permission denied\n"});
        QVERIFY(!QFileInfo::exists(m_folder->filePath(u"a.png"_s)));
    }

    void aFullDiskIsAnErrorAndLeavesNoPart()
    {
        constexpr int cannotMount = 3;
        const QString path = m_folder->filePath(u"a.png"_s);
        const auto outcome = childProcess::run([&] {
            if (!childProcess::mountSmallDisk(m_folder->path(), 65536)) {
                _exit(cannotMount);
            }
            console::printLine(outcomeOf(path, QByteArray(200000, 'x')));
            console::printLine(QFileInfo::exists(path) ? u"a part stays"_s : u"gone"_s);
            console::printLine(outcomeOf(m_folder->filePath(u"b.png"_s), QByteArray(30000, 'x')));
        });
        if (outcome.exitCode == cannotMount) {
            QSKIP("No disk can be mounted here; the limit of the size of files stands for it");
        }
        QCOMPARE(outcome.standardOutput, QByteArray{"No space left on device\ngone\nwritten\n"});
    }

    void aFileThatMayNotGrowIsAnErrorAndLeavesNoPart()
    {
        const QString path = m_folder->filePath(u"a.png"_s);
        const auto outcome = childProcess::run([&path] {
            childProcess::limitFileSize(4096);
            console::printLine(outcomeOf(path, QByteArray(200000, 'x')));
        });
        QCOMPARE(outcome.standardOutput, QByteArray{"File too large\n"});
        QVERIFY(!QFileInfo::exists(path));
    }

    void aLinkToAFullDeviceIsAnErrorAndStays()
    {
        if (access("/dev/full", W_OK) != 0) {
            QSKIP("This system has no device that is always full");
        }
        const QString path = m_folder->filePath(u"a.png"_s);
        QVERIFY(QFile::link(u"/dev/full"_s, path));
        QCOMPARE(outcomeOf(path, "x"), u"No space left on device"_s);
        QVERIFY(QFileInfo{path}.isSymLink());
        QVERIFY(QFileInfo::exists(u"/dev/full"_s));
    }

private:
    static void setTime(const QString &path)
    {
        QFile file{path};
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(1'700'000'000),
                                 QFileDevice::FileModificationTime));
    }

    const TemporaryHome m_home;
    const QString m_path = m_home.path(u"文件 'a'.png"_s);

    std::optional<QTemporaryDir> m_folder;
};

QUILMORA_TEST(FilesTest, runCoreTest)
#include "FilesTest.moc"
