#include "platform/FileWriter.h"

#include "platform/Console.h"
#include "support/ChildProcess.h"

#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

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

class FileWriterTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theBytesAreWrittenAsTheyAre_data();
    void theBytesAreWrittenAsTheyAre();
    void anExistingFileIsReplaced();
    void aMissingFolderIsToldInThePlatformsWords();
    void aFolderInTheFilesPlaceIsAnError();
    void aFolderWithoutTheRightToWriteIsAnError();
    void aDiskThatFillsUpIsToldInThePlatformsWordsAndLeavesNoPart();
    void aFileThatMayNotGrowIsToldInThePlatformsWordsAndLeavesNoPart();
    void aLinkToAFullDeviceIsAnErrorAndStays();
    void errorsAreChineseWithTheCatalogue();

private:
    std::unique_ptr<QTemporaryDir> folder;
};

void FileWriterTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
}

void FileWriterTest::cleanup()
{
    folder.reset();
}

void FileWriterTest::theBytesAreWrittenAsTheyAre_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("plain") << u"a.png"_s << QByteArray{"\x89PNG\r\n\x1a\n\0\0", 10};
    QTest::newRow("empty") << u"a.png"_s << QByteArray{""};
    QTest::newRow("large") << u"a.png"_s << QByteArray(5000000, 'x');
    QTest::newRow("Chinese, quotes, emoji") << u"封面 'a' \"b\" 😀.png"_s << QByteArray{"x"};
}

void FileWriterTest::theBytesAreWrittenAsTheyAre()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, bytes);
    const QString path = folder->filePath(name);
    QCOMPARE(outcomeOf(path, bytes), u"written"_s);
    QVERIFY(contents(path) == bytes);
}

void FileWriterTest::anExistingFileIsReplaced()
{
    const QString path = folder->filePath(u"a"_s);
    QCOMPARE(outcomeOf(path, "a long former text"), u"written"_s);
    QCOMPARE(outcomeOf(path, "new"), u"written"_s);
    QCOMPARE(contents(path), QByteArray{"new"});
}

void FileWriterTest::aMissingFolderIsToldInThePlatformsWords()
{
    QCOMPARE(outcomeOf(folder->filePath(u"missing/a.png"_s), "x"), u"No such file or directory"_s);
    QVERIFY(!QFileInfo::exists(folder->filePath(u"missing"_s)));
}

void FileWriterTest::aFolderInTheFilesPlaceIsAnError()
{
    const auto error = writeFile(folder->path(), "x");
    QVERIFY(error.has_value());
    QVERIFY2(error->contains(u"director"_s), qPrintable(*error));
    QVERIFY(QFileInfo{folder->path()}.isDir());
}

void FileWriterTest::aFolderWithoutTheRightToWriteIsAnError()
{
    QFile::setPermissions(folder->path(),
                          QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    const auto outcome = childProcess::run([this] {
        childProcess::becomeOrdinaryUser();
        console::printLine(outcomeOf(folder->filePath(u"a.png"_s), "x"));
    });
    QCOMPARE(outcome.standardOutput, QByteArray{"Permission denied\n"});
    QVERIFY(!QFileInfo::exists(folder->filePath(u"a.png"_s)));
}

void FileWriterTest::aDiskThatFillsUpIsToldInThePlatformsWordsAndLeavesNoPart()
{
    constexpr int cannotMount = 3;
    const auto outcome = childProcess::run([this] {
        if (!childProcess::mountSmallDisk(folder->path(), 65536)) {
            _exit(cannotMount);
        }
        console::printLine(outcomeOf(folder->filePath(u"a.png"_s), QByteArray(200000, 'x')));
        console::printLine(QFileInfo::exists(folder->filePath(u"a.png"_s)) ? u"a part stays"_s : u"gone"_s);
        console::printLine(outcomeOf(folder->filePath(u"b.png"_s), QByteArray(30000, 'x')));
    });
    if (outcome.exitCode == cannotMount) {
        QSKIP("No disk can be mounted here; the file size limit below stands for it");
    }
    QCOMPARE(outcome.standardOutput, QByteArray{"No space left on device\ngone\nwritten\n"});
}

void FileWriterTest::aFileThatMayNotGrowIsToldInThePlatformsWordsAndLeavesNoPart()
{
    const QString path = folder->filePath(u"a.png"_s);
    const auto outcome = childProcess::run([&path] {
        childProcess::limitFileSize(4096);
        console::printLine(outcomeOf(path, QByteArray(200000, 'x')));
    });
    QCOMPARE(outcome.standardOutput, QByteArray{"File too large\n"});
    QVERIFY(!QFileInfo::exists(path));
}

void FileWriterTest::aLinkToAFullDeviceIsAnErrorAndStays()
{
    if (access("/dev/full", W_OK) != 0) {
        QSKIP("This system has no device that is always full");
    }
    const QString path = folder->filePath(u"a.png"_s);
    QVERIFY(QFile::link(u"/dev/full"_s, path));
    QCOMPARE(outcomeOf(path, "x"), u"No space left on device"_s);
    QVERIFY(QFileInfo{path}.isSymLink());
    QVERIFY(QFileInfo::exists(u"/dev/full"_s));
}

void FileWriterTest::errorsAreChineseWithTheCatalogue()
{
    QTranslator catalogue;
    QVERIFY(catalogue.load(u"qtbase_zh_CN"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
    QVERIFY(QCoreApplication::installTranslator(&catalogue));
    QCOMPARE(outcomeOf(folder->filePath(u"missing/a.png"_s), "x"), u"此文件或目录不存在"_s);
    const QString full = QCoreApplication::translate("QIODevice", "No space left on device");
    QVERIFY(full.contains(u"空间"_s));
    if (access("/dev/full", W_OK) == 0 && QFile::link(u"/dev/full"_s, folder->filePath(u"full"_s))) {
        QCOMPARE(outcomeOf(folder->filePath(u"full"_s), "x"), full);
    }
}

QTEST_GUILESS_MAIN(FileWriterTest)
#include "FileWriterTest.moc"
