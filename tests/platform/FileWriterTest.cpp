#include "platform/FileWriter.h"

#include "platform/Console.h"
#include "support/ChildProcess.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <unistd.h>

using namespace Qt::StringLiterals;
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

class FileWriterTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder.emplace(); }

    void theBytesAreWrittenAsTheyAre_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("plain") << u"a.png"_s << QByteArray{"\x89PNG\r\n\x1a\n\0\0", 10};
        QTest::newRow("empty") << u"a.png"_s << QByteArray{""};
        QTest::newRow("large") << u"a.png"_s << QByteArray(5000000, 'x');
        QTest::newRow("Chinese, quotes, emoji") << u"封面 'a' \"b\" 😀.png"_s << QByteArray{"x"};
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

    void aMissingFolderIsAnError()
    {
        QCOMPARE(outcomeOf(m_folder->filePath(u"missing/a.png"_s), "x"), u"No such file or directory"_s);
        QVERIFY(!QFileInfo::exists(m_folder->filePath(u"missing"_s)));
    }

    void aFolderInPlaceOfTheFileIsAnError()
    {
        const auto error = writeFile(m_folder->path(), "x");
        QVERIFY(error.has_value());
        QVERIFY2(error->contains(u"director"_s), qPrintable(*error));
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
    std::optional<QTemporaryDir> m_folder;
};

QUILMORA_TEST(FileWriterTest, runCoreTest)
#include "FileWriterTest.moc"
