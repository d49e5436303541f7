#include "imaging/ImageCodec.h"
#include "model/PictureLimits.h"
#include "support/ChildProcess.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

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
    void ofATruncatedPictureTheBeginningIsGiven()
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

    void whatIsNoBitmapGivesNothing_data();

    void whatIsNoBitmapGivesNothing()
    {
        QFETCH(const QByteArray, bytes);
        QVERIFY(imageCodec::decode(bytes).isNull());
        const QTemporaryDir folder;
        for (const QString &suffix : {u".png"_s, u".jpg"_s, u".svg"_s}) {
            const QString path = samplePictures::write(folder.filePath(u"a"_s + suffix), bytes);
            QVERIFY(imageCodec::decodeFile(path).isNull());
        }
    }

    void damagedBytesNeverCrash()
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

    void anAbsurdSizeIsRefusedAtOnce_data()
    {
        const DataRows<QSize, char, char> row{"size", "bits", "colorType"};
        constexpr char gray = 0;
        constexpr char rgb = 2;
        constexpr char rgba = 6;
        row("color", {20000, 20000}, 8, rgb);
        row("color and alpha, 16 bits", {20000, 20000}, 16, rgba);
        row("gray", {20000, 20000}, 8, gray);
        row("black and white", {20000, 20000}, 1, gray);
        row("the format's largest", {2147483647, 2147483647}, 8, rgba);
        row("one long row", {2147483647, 1}, 8, rgba);
        row("nothing", {0, 0}, 8, rgb);
    }

    void anAbsurdSizeIsRefusedAtOnce()
    {
        QFETCH(const QSize, size);
        QFETCH(const char, bits);
        QFETCH(const char, colorType);
        const QByteArray bytes = samplePictures::pngByHand(size, bits, colorType, QByteArray(100, '\0'));
        const long before = peakMebibytes();
        QVERIFY(imageCodec::decode(bytes, pictureLimits::response).isNull());
        // No memory was taken for it.
        QVERIFY(peakMebibytes() - before < 16);
    }

    void aResponseThatUnpacksToFarTooMuchIsRefusedAtOnce()
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

    void whatIsNoFileGivesNothing()
    {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath(u"pipe.png"_s);
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0666), 0);
        QVERIFY(QFile::link(folder.filePath(u"missing.png"_s), folder.filePath(u"link.png"_s)));
        QVERIFY(QDir{folder.path()}.mkdir(u"folder.png"_s));
        QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions{0x7777}));
        for (const QString &path :
             {pipe, u"/dev/zero"_s, QString{}, QString{5000, u'x'}, folder.filePath(u"missing.png"_s),
              folder.filePath(u"missing/a.png"_s), folder.filePath(u"a\0b.png"_s),
              folder.filePath(u"link.png"_s), folder.filePath(u"folder.png"_s)}) {
            QVERIFY2(findsNoPictureAt(path), qPrintable(path));
        }
    }

    void aFileThatMayNotBeReadGivesNothing()
    {
        const QTemporaryDir folder;
        QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions{0x7777}));
        const QString path = samplePictures::write(folder.filePath(u"a.png"_s),
                                                   samplePictures::png(samplePictures::picture({8, 8})));
        QVERIFY(!findsNoPictureAt(path));
        QVERIFY(QFile::setPermissions(path, QFile::Permissions{}));
        QVERIFY(findsNoPictureAt(path));
    }

    void aFileBeyondAllBoundsIsNotRead()
    {
        const QTemporaryDir folder;
        // All but its beginning is a hole, which takes no space.
        const QString path = samplePictures::write(folder.filePath(u"a.png"_s),
                                                   samplePictures::png(samplePictures::picture({8, 8})));
        QVERIFY(QFile::resize(path, pictureLimits::file.fileBytes + 1));
        const long before = peakMebibytes();
        QVERIFY(imageCodec::decodeFile(path, pictureLimits::file).isNull());
        QVERIFY(peakMebibytes() - before < 16);
    }
};

// Outside of the class, where moc does not read the braces in its strings.
void ImageCodecBadInputTest::whatIsNoBitmapGivesNothing_data()
{
    const DataRows<QByteArray> row{"bytes"};
    row("no bytes", {});
    row("one byte", "\x89");
    row("a PNG's signature", QByteArray::fromHex("89504e470d0a1a0a"));
    row("a JPEG's signature", QByteArray::fromHex("ffd8ffe0"));
    row("text", "这是一段文字, no picture.\n");
    row("a page", "<!DOCTYPE html><html><body><img src='a.png'></body></html>");
    row("a drawing",
        QByteArray{
            R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><rect width="9" height="9"/></svg>)"});
    row("a drawing with a declaration",
        R"(<?xml version="1.0"?><svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)");
    row("a picture in text", "P3 1 1 255 0 0 0\n");
    row("a picture in a program", R"(/* XPM */ static char *x[]={"1 1 1 1","a c red","a"};)");
    row("noughts", QByteArray(1000, '\0'));
}

QUILMORA_TEST(ImageCodecBadInputTest, runCoreTest)
#include "ImageCodecBadInputTest.moc"
