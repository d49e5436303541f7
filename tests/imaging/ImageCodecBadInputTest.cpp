#include "imaging/ImageCodec.h"
#include "model/PictureLimits.h"
#include "support/ChildProcess.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

QByteArray bmp(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer{&bytes};
    image.save(&buffer, "bmp");
    return bytes;
}

/// Whether a copy of the process finds no picture at `path`, without hanging.
bool findsNoPictureAt(const QString &path)
{
    const auto outcome = childProcess::run([&path] {
        childProcess::becomeOrdinaryUser();
        _exit(imageCodec::decodeFile(path).isNull() ? 0 : 1);
    });
    return outcome.exitCode == 0;
}

/// The most memory that this process has had so far.
long peakMebibytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
#ifdef Q_OS_MACOS
    return usage.ru_maxrss / (1024 * 1024);
#else
    return usage.ru_maxrss / 1024;
#endif
}

} // namespace

class ImageCodecBadInputTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ofATruncatedPictureTheBeginningIsGiven();
    void whatIsNoBitmapGivesNothing_data();
    void whatIsNoBitmapGivesNothing();
    void damagedBytesNeverCrash();
    void anAbsurdSizeIsRefusedAtOnce_data();
    void anAbsurdSizeIsRefusedAtOnce();
    void aResponseThatUnpacksToFarTooMuchIsRefusedAtOnce();
    void aMissingFileGivesNothing();
    void aFolderGivesNothing();
    void aPipeGivesNothingAndDoesNotHang();
    void aDeviceGivesNothing();
    void aFileThatMayNotBeReadGivesNothing();
    void aFileBeyondAllBoundsIsNotRead();
};

void ImageCodecBadInputTest::ofATruncatedPictureTheBeginningIsGiven()
{
    const QImage whole = samplePictures::picture({64, 64}, Qt::blue);
    const QByteArray bytes = samplePictures::jpeg(whole).chopped(2);
    const QTemporaryDir folder;
    for (const QImage &given :
         {imageCodec::decode(bytes),
          imageCodec::decodeFile(samplePictures::write(folder.filePath(u"a.jpg"_s), bytes))}) {
        QCOMPARE(given.size(), whole.size());
        QVERIFY(qBlue(given.pixel(2, 2)) > 200);
        QVERIFY(qRed(given.pixel(2, 2)) < 60);
    }
}

void ImageCodecBadInputTest::whatIsNoBitmapGivesNothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no bytes") << QByteArray{};
    QTest::newRow("one byte") << QByteArray{"\x89"};
    QTest::newRow("a PNG's signature") << QByteArray::fromHex("89504e470d0a1a0a");
    QTest::newRow("a JPEG's signature") << QByteArray::fromHex("ffd8ffe0");
    QTest::newRow("text") << QByteArray{"这是一段文字, no picture.\n"};
    QTest::newRow("a page") << QByteArray{"<!DOCTYPE html><html><body><img src='a.png'></body></html>"};
    QTest::newRow("a drawing") << QByteArray{
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><rect width="9" height="9"/></svg>)"};
    QTest::newRow("a drawing with a declaration") << QByteArray{
        R"(<?xml version="1.0"?><svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)"};
    QTest::newRow("a picture in text") << QByteArray{"P3 1 1 255 0 0 0\n"};
    QTest::newRow("a picture in a program")
        << QByteArray{R"(/* XPM */ static char *x[]={"1 1 1 1","a c red","a"};)"};
    QTest::newRow("noughts") << QByteArray(1000, '\0');
}

void ImageCodecBadInputTest::whatIsNoBitmapGivesNothing()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(imageCodec::decode(bytes).isNull());
    const QTemporaryDir folder;
    for (const QString &suffix : {u".png"_s, u".jpg"_s, u".svg"_s}) {
        const QString path = samplePictures::write(folder.filePath(u"a"_s + suffix), bytes);
        QVERIFY(imageCodec::decodeFile(path).isNull());
    }
}

void ImageCodecBadInputTest::damagedBytesNeverCrash()
{
    // The decoders' complaints would fill the report.
    const auto formerHandler = qInstallMessageHandler([](auto, const auto &, const auto &) {});
    std::mt19937 random{7};
    const QImage image = samplePictures::picture({24, 18});
    int pictures = 0;
    for (const QByteArray &whole :
         {samplePictures::png(image), samplePictures::sidewaysJpeg(image), samplePictures::cmykJpeg(),
          samplePictures::animatedGif(), bmp(image), samplePictures::progressiveJpeg(image)}) {
        for (int i = 0; i < 150; ++i) {
            QByteArray damaged = whole;
            for (int changes = 0; changes < 4; ++changes) {
                damaged[static_cast<qsizetype>(random()) % damaged.size()] = static_cast<char>(random());
            }
            pictures += imageCodec::decode(damaged).isNull() ? 0 : 1;
        }
    }
    qInstallMessageHandler(formerHandler);
    QVERIFY(pictures < 900);
}

void ImageCodecBadInputTest::anAbsurdSizeIsRefusedAtOnce_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("colorType");
    QTest::newRow("colour") << QSize{20000, 20000} << 8 << 2;
    QTest::newRow("colour and alpha, 16 bits") << QSize{20000, 20000} << 16 << 6;
    QTest::newRow("grey") << QSize{20000, 20000} << 8 << 0;
    QTest::newRow("black and white") << QSize{20000, 20000} << 1 << 0;
    QTest::newRow("the format's largest") << QSize{2147483647, 2147483647} << 8 << 6;
    QTest::newRow("one long row") << QSize{2147483647, 1} << 8 << 6;
    QTest::newRow("nothing") << QSize{0, 0} << 8 << 2;
}

void ImageCodecBadInputTest::anAbsurdSizeIsRefusedAtOnce()
{
    QFETCH(const QSize, size);
    QFETCH(const int, bits);
    QFETCH(const int, colorType);
    const QByteArray bytes = samplePictures::pngByHand(size, static_cast<char>(bits),
                                                       static_cast<char>(colorType), QByteArray(100, '\0'));
    const long before = peakMebibytes();
    QVERIFY(imageCodec::decode(bytes, pictureLimits::response).isNull());
    // Nobody has made room for it.
    QVERIFY(peakMebibytes() - before < 16);
}

void ImageCodecBadInputTest::aResponseThatUnpacksToFarTooMuchIsRefusedAtOnce()
{
    QImage black{12000, 12000, QImage::Format_Mono};
    black.fill(0);
    const QByteArray bomb = samplePictures::png(black);
    QVERIFY(bomb.size() < 100'000);
    const long before = peakMebibytes();
    QVERIFY(imageCodec::decode(bomb, pictureLimits::response).isNull());
    QVERIFY(peakMebibytes() - before < 16);
    // Of a user's own file it is a picture.
    const QTemporaryDir folder;
    QVERIFY(!imageCodec::decodeFile(samplePictures::write(folder.filePath(u"black.png"_s), bomb),
                                    pictureLimits::file)
                 .isNull());
}

void ImageCodecBadInputTest::aMissingFileGivesNothing()
{
    const QTemporaryDir folder;
    QVERIFY(imageCodec::decodeFile(folder.filePath(u"missing.png"_s)).isNull());
    QVERIFY(imageCodec::decodeFile(folder.filePath(u"missing/a.png"_s)).isNull());
    QVERIFY(imageCodec::decodeFile(QString{}).isNull());
    QVERIFY(imageCodec::decodeFile(QString{5000, u'x'}).isNull());
    QVERIFY(imageCodec::decodeFile(folder.filePath(u"a\0b.png"_s)).isNull());
    QVERIFY(QFile::link(folder.filePath(u"missing.png"_s), folder.filePath(u"link.png"_s)));
    QVERIFY(imageCodec::decodeFile(folder.filePath(u"link.png"_s)).isNull());
}

void ImageCodecBadInputTest::aFolderGivesNothing()
{
    const QTemporaryDir folder;
    QVERIFY(QDir{folder.path()}.mkdir(u"a.png"_s));
    QVERIFY(imageCodec::decodeFile(folder.filePath(u"a.png"_s)).isNull());
}

void ImageCodecBadInputTest::aPipeGivesNothingAndDoesNotHang()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"pipe.png"_s);
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0666), 0);
    QVERIFY(findsNoPictureAt(path));
}

void ImageCodecBadInputTest::aDeviceGivesNothing()
{
    QVERIFY(findsNoPictureAt(u"/dev/zero"_s));
}

void ImageCodecBadInputTest::aFileThatMayNotBeReadGivesNothing()
{
    const QTemporaryDir folder;
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions{0x7777}));
    const QString path = samplePictures::write(folder.filePath(u"a.png"_s),
                                               samplePictures::png(samplePictures::picture({8, 8})));
    QVERIFY(!findsNoPictureAt(path));
    QVERIFY(QFile::setPermissions(path, QFile::Permissions{}));
    QVERIFY(findsNoPictureAt(path));
}

void ImageCodecBadInputTest::aFileBeyondAllBoundsIsNotRead()
{
    const QTemporaryDir folder;
    // The file takes no room: all but its beginning is a hole.
    const QString path = samplePictures::write(folder.filePath(u"a.png"_s),
                                               samplePictures::png(samplePictures::picture({8, 8})));
    QVERIFY(QFile::resize(path, pictureLimits::file.fileBytes + 1));
    const long before = peakMebibytes();
    QVERIFY(imageCodec::decodeFile(path, pictureLimits::file).isNull());
    QVERIFY(peakMebibytes() - before < 16);
}

QUILMORA_TEST(ImageCodecBadInputTest, runCoreTest)
#include "ImageCodecBadInputTest.moc"
