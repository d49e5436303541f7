#include "model/HistoryRecord.h"

#include "support/SamplePictures.h"
#include "support/StandardOutput.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class HistoryRecordTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home.emplace(); }

    void aPathWithATildeIsReadInTheHome_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a cover") << u"Pictures/Quilmora/coverimg/cover_20250302_140327_4821.png"_s;
        QTest::newRow("Chinese") << u"图片/封面.png"_s;
        QTest::newRow("blanks") << u"my pictures/ a b .png"_s;
        QTest::newRow("quotes") << u"it's \"mine\"/a'b\".png"_s;
        QTest::newRow("emoji") << u"😀/👩‍👧.png"_s;
        QTest::newRow("another tilde") << u"~/odd~.png"_s;
    }

    void aPathWithATildeIsReadInTheHome()
    {
        QFETCH(const QString, name);
        samplePictures::write(m_home->path(name), samplePictures::png(m_image));
        QCOMPARE(recordOf(u"~/"_s + name).image(), m_image);
        QCOMPARE(recordOf(m_home->path(name)).image(), m_image);
    }

    void aRelativePathIsReadInTheCurrentFolder()
    {
        samplePictures::write(m_home->path(u"~/odd~.png"_s), samplePictures::png(m_image));
        const QString formerFolder = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_home->path(u"~"_s)));
        const QImage image = recordOf(u"odd~.png"_s).image();
        QVERIFY(QDir::setCurrent(formerFolder));
        QCOMPARE(image, m_image);
    }

    void theImageIsReadAfreshEachTime()
    {
        const HistoryRecord record = recordOf(u"~/a.png"_s);
        QVERIFY(record.image().isNull());
        const QString path = samplePictures::write(m_home->path(u"a.png"_s), samplePictures::png(m_image));
        QCOMPARE(record.image(), m_image);
        const QImage other = samplePictures::picture({40, 30}, Qt::blue);
        QVERIFY(other != m_image);
        samplePictures::write(path, samplePictures::png(other));
        QCOMPARE(record.image(), other);
        QVERIFY(QFile::remove(path));
        QVERIFY(record.image().isNull());
    }

    void whatIsNoPictureGivesNoImageAndPrintsNothing()
    {
        const QString path = samplePictures::write(m_home->path(u"a.png"_s), "这不是图片\n");
        for (const QString &wrong : {path, u"~/a.png"_s, u"~/missing.png"_s, u"~"_s, u""_s}) {
            QImage image = m_image;
            QCOMPARE(standardOutputOf([&] { image = recordOf(wrong).image(); }), QByteArray{});
            QVERIFY2(image.isNull(), qPrintable(wrong));
        }
    }

private:
    static HistoryRecord recordOf(const QString &imagePath)
    {
        return {1, u"提示词"_s, imagePath, fromSecondsSince1970(1700000000.5), u"m"_s};
    }

    std::optional<TemporaryHome> m_home;
    const QImage m_image = samplePictures::picture({40, 30});
};

QUILMORA_TEST(HistoryRecordTest, runCoreTest)
#include "HistoryRecordTest.moc"
