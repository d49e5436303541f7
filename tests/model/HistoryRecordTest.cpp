#include "model/HistoryRecord.h"

#include "support/ChildProcess.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

HistoryRecord recordOf(const QString &imagePath)
{
    return {1, u"提示词"_s, imagePath, fromSecondsSince1970(1700000000.5), u"m"_s};
}

} // namespace

class HistoryRecordTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theFieldsAreKeptAsGiven();
    void aPathWithATildeIsReadInTheHome_data();
    void aPathWithATildeIsReadInTheHome();
    void aPathWithoutATildeIsUsedAsItStands();
    void theImageIsReadAfreshEachTime();
    void theImageStandsUpright();
    void aLyingSuffixDoesNotMatter();
    void aDeletedFileGivesNoImageAndNoError();
    void whatIsNoPictureGivesNoImage_data();
    void whatIsNoPictureGivesNoImage();
    void aFolderGivesNoImage();
    void aPipeGivesNoImageAndDoesNotHang();

private:
    std::unique_ptr<TemporaryHome> home;
    const QImage image = samplePictures::picture({40, 30});
};

void HistoryRecordTest::init()
{
    home = std::make_unique<TemporaryHome>();
}

void HistoryRecordTest::cleanup()
{
    home.reset();
}

void HistoryRecordTest::theFieldsAreKeptAsGiven()
{
    const HistoryRecord record{9007199254740993, u"提示词"_s, u"~/a.png"_s,
                               fromSecondsSince1970(1700000000.25), QString{}};
    QCOMPARE(record.id, qint64{9007199254740993});
    QCOMPARE(record.prompt, u"提示词"_s);
    QCOMPARE(record.imagePath, u"~/a.png"_s);
    QVERIFY(secondsSince1970(record.createdAt) == 1700000000.25);
    QCOMPARE(record.modelID, QString{});
}

void HistoryRecordTest::aPathWithATildeIsReadInTheHome_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a cover") << u"Pictures/Quilmora/coverimg/cover_20250302_140327_4821.png"_s;
    QTest::newRow("Chinese") << u"图片/封面.png"_s;
    QTest::newRow("blanks") << u"my pictures/ a b .png"_s;
    QTest::newRow("quotes") << u"it's \"mine\"/a'b\".png"_s;
    QTest::newRow("emoji") << u"😀/👩‍👧.png"_s;
}

void HistoryRecordTest::aPathWithATildeIsReadInTheHome()
{
    QFETCH(const QString, name);
    samplePictures::write(home->path(name), samplePictures::png(image));
    QCOMPARE(recordOf(u"~/"_s + name).image(), image);
    QCOMPARE(recordOf(home->path(name)).image(), image);
}

void HistoryRecordTest::aPathWithoutATildeIsUsedAsItStands()
{
    const QString path = samplePictures::write(home->path(u"~/odd~.png"_s), samplePictures::png(image));
    QVERIFY(path.startsWith(u'/'));
    QCOMPARE(recordOf(path).image(), image);
    const QString formerFolder = QDir::currentPath();
    QVERIFY(QDir::setCurrent(home->path(u"~"_s)));
    const QImage relative = recordOf(u"odd~.png"_s).image();
    QVERIFY(QDir::setCurrent(formerFolder));
    QCOMPARE(relative, image);
}

void HistoryRecordTest::theImageIsReadAfreshEachTime()
{
    const HistoryRecord record = recordOf(u"~/a.png"_s);
    QVERIFY(record.image().isNull());
    samplePictures::write(home->path(u"a.png"_s), samplePictures::png(image));
    QCOMPARE(record.image(), image);
    const QImage other = samplePictures::picture({40, 30}, Qt::blue);
    samplePictures::write(home->path(u"a.png"_s), samplePictures::png(other));
    QCOMPARE(record.image(), other);
    QVERIFY(record.image() != image);
}

void HistoryRecordTest::theImageStandsUpright()
{
    samplePictures::write(home->path(u"a.png"_s), samplePictures::sidewaysJpeg(image));
    const QImage upright = recordOf(u"~/a.png"_s).image();
    QCOMPARE(upright.size(), QSize(30, 40));
    // The mark of the top left corner has gone to the top right one.
    QVERIFY(qRed(upright.pixel(27, 2)) > 200 && qGreen(upright.pixel(27, 2)) < 60);
}

void HistoryRecordTest::aLyingSuffixDoesNotMatter()
{
    samplePictures::write(home->path(u"a.png"_s), samplePictures::jpeg(image));
    QCOMPARE(recordOf(u"~/a.png"_s).image().size(), image.size());
    samplePictures::write(home->path(u"a.txt"_s), samplePictures::png(image));
    QCOMPARE(recordOf(u"~/a.txt"_s).image(), image);
}

void HistoryRecordTest::aDeletedFileGivesNoImageAndNoError()
{
    samplePictures::write(home->path(u"a.png"_s), samplePictures::png(image));
    const HistoryRecord record = recordOf(u"~/a.png"_s);
    QVERIFY(!record.image().isNull());
    QVERIFY(QFile::remove(home->path(u"a.png"_s)));
    bool isAbsent = false;
    const QByteArray output = standardOutputOf([&] { isAbsent = record.image().isNull(); });
    QVERIFY(isAbsent);
    QCOMPARE(output, QByteArray{});
}

void HistoryRecordTest::whatIsNoPictureGivesNoImage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray png = samplePictures::png(samplePictures::picture({400, 300}));
    const QByteArray jpeg = samplePictures::jpeg(samplePictures::picture({400, 300}), 100);
    QTest::newRow("no bytes") << QByteArray{};
    QTest::newRow("half a PNG") << png.first(png.size() / 2);
    QTest::newRow("half a JPEG") << jpeg.first(jpeg.size() / 2);
    QTest::newRow("text") << QByteArray{"这不是图片\n"};
    QTest::newRow("a drawing") << QByteArray{
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"};
}

void HistoryRecordTest::whatIsNoPictureGivesNoImage()
{
    QFETCH(const QByteArray, bytes);
    samplePictures::write(home->path(u"a.png"_s), bytes);
    QImage read = image;
    const QByteArray output = standardOutputOf([&] { read = recordOf(u"~/a.png"_s).image(); });
    QVERIFY(read.isNull());
    QCOMPARE(output, QByteArray{});
}

void HistoryRecordTest::aFolderGivesNoImage()
{
    QVERIFY(QDir{home->path()}.mkdir(u"a.png"_s));
    QVERIFY(recordOf(u"~/a.png"_s).image().isNull());
    QVERIFY(recordOf(u"~"_s).image().isNull());
    QVERIFY(recordOf(QString{}).image().isNull());
}

void HistoryRecordTest::aPipeGivesNoImageAndDoesNotHang()
{
    QCOMPARE(mkfifo(QFile::encodeName(home->path(u"a.png"_s)).constData(), 0600), 0);
    const auto outcome = childProcess::run([] { _exit(recordOf(u"~/a.png"_s).image().isNull() ? 0 : 1); });
    QCOMPARE(outcome.signal, 0);
    QCOMPARE(outcome.exitCode, 0);
}

QTEST_GUILESS_MAIN(HistoryRecordTest)
#include "HistoryRecordTest.moc"
