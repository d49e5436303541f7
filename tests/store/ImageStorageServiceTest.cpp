#include "store/ImageStorageService.h"

#include "model/HistoryRecord.h"
#include "support/ChildProcess.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"
#include "support/TemporaryHome.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <memory>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class ImageStorageServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theFolderIsMadeWithThoseAboveIt();
    void aFolderThatIsThereIsKept();
    void theStoredPathNamesTheFileInTheHome();
    void theNameIsTheMomentAndFourDigits();
    void coversOfOneSecondDifferInTheirDigits();
    void theFileIsAPngOfEveryPixel_data();
    void theFileIsAPngOfEveryPixel();
    void thePathHasTheFixedFormWhateverTheFolder();
    void aStoredCoverIsLoadedAndDeleted();
    void deletingLeavesAllElse();
    void theSharedInstanceLiesInThePicturesFolder();

private:
    QString folder() const { return home->path(u"Pictures/Quilmora/coverimg"_s); }
    QStringList files() const
    {
        return QDir{folder()}.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<TemporaryHome> home;
    const QImage image = samplePictures::picture({64, 48});
};

void ImageStorageServiceTest::init()
{
    home = std::make_unique<TemporaryHome>();
}

void ImageStorageServiceTest::cleanup()
{
    home.reset();
}

void ImageStorageServiceTest::theFolderIsMadeWithThoseAboveIt()
{
    QVERIFY(!QFileInfo::exists(home->path(u"Pictures"_s)));
    const QByteArray output = standardOutputOf([this] { const ImageStorageService storage{folder()}; });
    QVERIFY(QFileInfo{folder()}.isDir());
    QCOMPARE(output, QByteArray{});
    QVERIFY(files().isEmpty());
}

void ImageStorageServiceTest::aFolderThatIsThereIsKept()
{
    samplePictures::write(folder() + u"/mine.txt"_s, "mine");
    const ImageStorageService storage{folder()};
    QCOMPARE(files(), QStringList{u"mine.txt"_s});
}

void ImageStorageServiceTest::theStoredPathNamesTheFileInTheHome()
{
    ImageStorageService storage{folder()};
    std::optional<QString> path;
    const QByteArray output = standardOutputOf([&] { path = storage.saveImage(image); });
    QVERIFY(path.has_value());
    QCOMPARE(output, QByteArray{});
    QVERIFY(path->startsWith(u"~/Pictures/Quilmora/coverimg/cover_"_s));
    QCOMPARE(files(), QStringList{path->section(u'/', -1)});
    QVERIFY(QFileInfo{home->path() + path->sliced(1)}.isFile());
    const HistoryRecord record{1, QString{}, *path, now(), QString{}};
    QCOMPARE(record.image(), samplePictures::inSrgb(image));
}

void ImageStorageServiceTest::theNameIsTheMomentAndFourDigits()
{
    ImageStorageService storage{folder()};
    const QDateTime before = QDateTime::currentDateTime();
    const auto path = storage.saveImage(image);
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(path.has_value());
    static const QRegularExpression form{QRegularExpression::anchoredPattern(
        uR"(~/Pictures/Quilmora/coverimg/cover_(\d{8}_\d{6})_([1-9]\d{3})\.png)"_s)};
    const QRegularExpressionMatch match = form.match(*path);
    QVERIFY2(match.hasMatch(), qPrintable(*path));
    const QString pattern = u"yyyyMMdd_HHmmss"_s;
    QVERIFY(before.toString(pattern) <= match.captured(1));
    QVERIFY(match.captured(1) <= after.toString(pattern));
}

void ImageStorageServiceTest::coversOfOneSecondDifferInTheirDigits()
{
    ImageStorageService storage{folder()};
    const QImage dot = samplePictures::picture({1, 1});
    QMap<QString, QSet<QString>> digitsOfSecond;
    qsizetype most = 0;
    for (int i = 0; i < 40; ++i) {
        const QString name = storage.saveImage(dot).value_or(QString{}).section(u'/', -1);
        QSet<QString> &digits = digitsOfSecond[name.section(u'_', 1, 2)];
        digits.insert(name.section(u'_', 3));
        most = std::max(most, digits.size());
    }
    // Now and then two of so many may draw the same number, but not nearly all of them.
    QVERIFY(most > 10);
    qsizetype distinct = 0;
    for (const QSet<QString> &digits : std::as_const(digitsOfSecond)) {
        distinct += digits.size();
    }
    QCOMPARE(files().size(), distinct);
}

void ImageStorageServiceTest::theFileIsAPngOfEveryPixel_data()
{
    QTest::addColumn<QImage>("cover");
    QImage transparent{9, 7, QImage::Format_ARGB32};
    transparent.fill(QColor{10, 20, 30, 40});
    QImage deep{9, 7, QImage::Format_RGBA64};
    deep.fill(QColor::fromRgba64(0x1234, 0x5678, 0x9abc));
    QTest::newRow("colour") << samplePictures::picture({2848, 1600});
    QTest::newRow("transparent") << transparent;
    QTest::newRow("16 bits") << deep;
    QTest::newRow("grey") << samplePictures::picture({90, 70}).convertToFormat(QImage::Format_Grayscale8);
    QTest::newRow("palette") << samplePictures::picture({90, 70}).convertToFormat(QImage::Format_Indexed8);
    QTest::newRow("one pixel") << samplePictures::picture({1, 1});
}

void ImageStorageServiceTest::theFileIsAPngOfEveryPixel()
{
    QFETCH(const QImage, cover);
    ImageStorageService storage{folder()};
    const auto path = storage.saveImage(cover);
    QVERIFY(path.has_value());
    QFile file{home->path() + path->sliced(1)};
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.read(8), QByteArray::fromHex("89504e470d0a1a0a"));
    const QImage stored = storage.loadImage(*path);
    QCOMPARE(stored.size(), cover.size());
    QCOMPARE(stored.convertToFormat(QImage::Format_RGBA64),
             samplePictures::inSrgb(cover.convertToFormat(QImage::Format_RGBA64)));
}

void ImageStorageServiceTest::thePathHasTheFixedFormWhateverTheFolder()
{
    ImageStorageService storage{home->path(u"别处/covers"_s)};
    const auto path = storage.saveImage(image);
    QVERIFY(path.has_value());
    QVERIFY(path->startsWith(u"~/Pictures/Quilmora/coverimg/cover_"_s));
    QVERIFY(QFile::exists(home->path(u"别处/covers/"_s) + path->section(u'/', -1)));
}

void ImageStorageServiceTest::aStoredCoverIsLoadedAndDeleted()
{
    ImageStorageService storage{folder()};
    const QString path = storage.saveImage(image).value_or(QString{});
    QCOMPARE(storage.loadImage(path), samplePictures::inSrgb(image));
    QCOMPARE(storage.loadImage(home->path() + path.sliced(1)), samplePictures::inSrgb(image));
    storage.deleteImage(path);
    QVERIFY(storage.loadImage(path).isNull());
    QVERIFY(files().isEmpty());
}

void ImageStorageServiceTest::deletingLeavesAllElse()
{
    ImageStorageService storage{folder()};
    const QString kept = storage.saveImage(image).value_or(QString{});
    const QString byWholePath = samplePictures::write(home->path(u"a.png"_s), "x");
    const QByteArray output = standardOutputOf([&] {
        storage.deleteImage(byWholePath);
        storage.deleteImage(u"~/Pictures/Quilmora/coverimg/missing.png"_s);
        storage.deleteImage(QString{});
    });
    QCOMPARE(output, QByteArray{});
    QVERIFY(!QFile::exists(byWholePath));
    QCOMPARE(files(), QStringList{kept.section(u'/', -1)});
}

void ImageStorageServiceTest::theSharedInstanceLiesInThePicturesFolder()
{
    const auto outcome = childProcess::run([this] {
        ImageStorageService &storage = ImageStorageService::shared();
        const bool saved = storage.saveImage(image).has_value();
        _exit(saved && &storage == &ImageStorageService::shared() ? 0 : 1);
    });
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.standardOutput, QByteArray{});
    QCOMPARE(files().size(), 1);
}

QTEST_GUILESS_MAIN(ImageStorageServiceTest)
#include "ImageStorageServiceTest.moc"
