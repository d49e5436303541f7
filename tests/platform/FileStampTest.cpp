#include "platform/FileStamp.h"

#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class FileStampTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUntouchedFileKeepsItsStamp();
    void anotherFileOfTheSameNameSizeAndTimeHasAnotherStamp();
    void otherContentOfTheSameSizeAndTimeGivesAnotherStamp();
    void otherRightsGiveAnotherStamp();
    void onlyRegularFilesHaveOne();
    void aLinkHasTheStampOfItsFile();

private:
    static void setTime(const QString &path)
    {
        QFile file{path};
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(1'700'000'000),
                                 QFileDevice::FileModificationTime));
    }

    const TemporaryHome home;
    const QString path = home.path(u"文件 'a'.png"_s);
};

void FileStampTest::anUntouchedFileKeepsItsStamp()
{
    samplePictures::write(path, "content");
    QVERIFY(fileStamp(path).has_value());
    QCOMPARE(fileStamp(path)->bytes, 7);
    QVERIFY(fileStamp(path) == fileStamp(path));
}

void FileStampTest::anotherFileOfTheSameNameSizeAndTimeHasAnotherStamp()
{
    samplePictures::write(path, "content");
    setTime(path);
    const auto before = fileStamp(path);
    const QString other = samplePictures::write(home.path(u"other"_s), "CONTENT");
    setTime(other);
    QVERIFY(QFile::remove(path));
    QVERIFY(QFile::rename(other, path));
    QCOMPARE(fileStamp(path)->modified, before->modified);
    QCOMPARE(fileStamp(path)->bytes, before->bytes);
    QVERIFY(fileStamp(path) != before);
}

void FileStampTest::otherContentOfTheSameSizeAndTimeGivesAnotherStamp()
{
    samplePictures::write(path, "content");
    setTime(path);
    const auto before = fileStamp(path);
    // The clock of some file systems ticks in steps of milliseconds.
    QTRY_VERIFY([&] {
        samplePictures::write(path, "CONTENT");
        setTime(path);
        return fileStamp(path) != before;
    }());
    QCOMPARE(fileStamp(path)->modified, before->modified);
}

void FileStampTest::otherRightsGiveAnotherStamp()
{
    samplePictures::write(path, "content");
    const auto before = fileStamp(path);
    QTRY_VERIFY([&] {
        return QFile::setPermissions(path, QFile::ReadOwner) && fileStamp(path) != before;
    }());
}

void FileStampTest::onlyRegularFilesHaveOne()
{
    QVERIFY(!fileStamp({}));
    QVERIFY(!fileStamp(home.path()));
    QVERIFY(!fileStamp(home.path(u"missing"_s)));
    QVERIFY(!fileStamp(u"/dev/zero"_s));
    const QString pipe = home.path(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!fileStamp(pipe));
}

void FileStampTest::aLinkHasTheStampOfItsFile()
{
    const QString file = samplePictures::write(home.path(u"target"_s), "content");
    const QString link = home.path(u"link"_s);
    QVERIFY(QFile::link(file, link));
    QVERIFY(fileStamp(link) == fileStamp(file));
    const QString dangling = home.path(u"dangling"_s);
    QVERIFY(QFile::link(home.path(u"nothing"_s), dangling));
    QVERIFY(!fileStamp(dangling));
}

QTEST_GUILESS_MAIN(FileStampTest)
#include "FileStampTest.moc"
