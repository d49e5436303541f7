#include "platform/FileFingerprint.h"

#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class FileFingerprintTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
};

QUILMORA_TEST(FileFingerprintTest, runCoreTest)
#include "FileFingerprintTest.moc"
