#include "store/ImageStorageService.h"
#include "support/ChildProcess.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <functional>
#include <memory>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// A picture whose file takes about 120,000 bytes.
QImage noise()
{
    std::mt19937 random{1};
    QImage image{200, 200, QImage::Format_RGB32};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, static_cast<QRgb>(random()) | 0xff000000U);
        }
    }
    return image;
}

} // namespace

class ImageStorageServiceFailureTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aFolderDeletedWhileRunningIsToldOnOneLine();
    void theErrorIsChineseWithTheCatalogue();
    void aFileInTheFoldersPlaceIsTold();
    void aFolderWithoutTheRightToWriteIsTold();
    void aFullDiskIsToldAndLeavesNoPart();
    void aFileThatMayNotGrowIsToldAndLeavesNoPart();
    void anImageThatCannotBeEncodedGivesNoPathNoFileAndNoLine();
    void whatIsNoPictureIsNotLoaded_data();
    void whatIsNoPictureIsNotLoaded();
    void afterAFailureTheNextCoverIsSaved();

private:
    QString folder() const { return place->filePath(u"coverimg"_s); }
    /// Saves in a copy of the process once `prepare` has run there; it ends with 0 if no path came back.
    childProcess::Outcome saveInCopy(const std::function<void()> &prepare) const
    {
        return childProcess::run([&] {
            ImageStorageService storage{folder()};
            prepare();
            const bool refused = !storage.saveImage(noise()).has_value();
            _exit(refused && QDir{folder()}.isEmpty() ? 0 : 1);
        });
    }

    std::unique_ptr<QTemporaryDir> place;
};

void ImageStorageServiceFailureTest::init()
{
    place = std::make_unique<QTemporaryDir>();
    QCOMPARE(chmod(place->path().toUtf8().constData(), 0755), 0);
}

void ImageStorageServiceFailureTest::cleanup()
{
    place.reset();
}

void ImageStorageServiceFailureTest::aFolderDeletedWhileRunningIsToldOnOneLine()
{
    ImageStorageService storage{folder()};
    QVERIFY(QDir{folder()}.removeRecursively());
    std::optional<QString> path;
    const QByteArray output = standardOutputOf([&] { path = storage.saveImage(noise()); });
    QCOMPARE(output, QByteArray{"保存图片失败: No such file or directory\n"});
    QVERIFY(!path.has_value());
    QVERIFY(!QFileInfo::exists(folder()));
}

void ImageStorageServiceFailureTest::theErrorIsChineseWithTheCatalogue()
{
    QTranslator catalogue;
    QVERIFY(catalogue.load(u"qtbase_zh_CN"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
    QVERIFY(QCoreApplication::installTranslator(&catalogue));
    ImageStorageService storage{folder()};
    QVERIFY(QDir{folder()}.removeRecursively());
    QCOMPARE(standardOutputOf([&] { storage.saveImage(noise()); }),
             QByteArray{"保存图片失败: 此文件或目录不存在\n"});
}

void ImageStorageServiceFailureTest::aFileInTheFoldersPlaceIsTold()
{
    samplePictures::write(folder(), "somebody's");
    std::optional<QString> path;
    const QByteArray output = standardOutputOf([&] {
        ImageStorageService storage{folder()};
        path = storage.saveImage(noise());
    });
    QCOMPARE(output, QByteArray{"保存图片失败: Not a directory\n"});
    QVERIFY(!path.has_value());
    QVERIFY(QFileInfo{folder()}.isFile());
}

void ImageStorageServiceFailureTest::aFolderWithoutTheRightToWriteIsTold()
{
    QVERIFY(QDir{}.mkpath(folder()));
    QCOMPARE(chmod(folder().toUtf8().constData(), 0555), 0);
    const auto outcome = saveInCopy([] { childProcess::becomeOrdinaryUser(); });
    QCOMPARE(outcome.standardOutput, QByteArray{"保存图片失败: Permission denied\n"});
    QCOMPARE(outcome.exitCode, 0);
}

void ImageStorageServiceFailureTest::aFullDiskIsToldAndLeavesNoPart()
{
    constexpr int cannotMount = 3;
    const auto outcome = saveInCopy([this] {
        if (!childProcess::mountSmallDisk(folder(), 65536)) {
            _exit(cannotMount);
        }
    });
    if (outcome.exitCode == cannotMount) {
        QSKIP("No disk can be mounted here; the file size limit below stands for it");
    }
    QCOMPARE(outcome.standardOutput, QByteArray{"保存图片失败: No space left on device\n"});
    QCOMPARE(outcome.exitCode, 0);
}

void ImageStorageServiceFailureTest::aFileThatMayNotGrowIsToldAndLeavesNoPart()
{
    const auto outcome = saveInCopy([] { childProcess::limitFileSize(4096); });
    QCOMPARE(outcome.standardOutput, QByteArray{"保存图片失败: File too large\n"});
    QCOMPARE(outcome.exitCode, 0);
}

void ImageStorageServiceFailureTest::anImageThatCannotBeEncodedGivesNoPathNoFileAndNoLine()
{
    ImageStorageService storage{folder()};
    std::optional<QString> path;
    const QByteArray output = standardOutputOf([&] { path = storage.saveImage(QImage{}); });
    QVERIFY(!path.has_value());
    QCOMPARE(output, QByteArray{});
    QVERIFY(QDir{folder()}.isEmpty());
}

void ImageStorageServiceFailureTest::whatIsNoPictureIsNotLoaded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray png = samplePictures::png(noise());
    QTest::newRow("no bytes") << QByteArray{};
    QTest::newRow("half a PNG") << png.first(png.size() / 2);
    QTest::newRow("text") << QByteArray{"text"};
}

void ImageStorageServiceFailureTest::whatIsNoPictureIsNotLoaded()
{
    QFETCH(const QByteArray, bytes);
    const ImageStorageService storage{folder()};
    const QString path = samplePictures::write(folder() + u"/a.png"_s, bytes);
    bool absent = false;
    const QByteArray output = standardOutputOf([&] {
        absent = storage.loadImage(path).isNull() && storage.loadImage(folder()).isNull() &&
                 storage.loadImage(path + u"2"_s).isNull();
    });
    QVERIFY(absent);
    QCOMPARE(output, QByteArray{});
}

void ImageStorageServiceFailureTest::afterAFailureTheNextCoverIsSaved()
{
    ImageStorageService storage{folder()};
    QVERIFY(QDir{folder()}.removeRecursively());
    standardOutputOf([&] { storage.saveImage(noise()); });
    QVERIFY(QDir{}.mkpath(folder()));
    QVERIFY(storage.saveImage(noise()).has_value());
    QCOMPARE(QDir{folder()}.entryList(QDir::Files).size(), 1);
}

QTEST_GUILESS_MAIN(ImageStorageServiceFailureTest)
#include "ImageStorageServiceFailureTest.moc"
