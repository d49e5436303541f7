#include "store/ImageStorageService.h"

#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <functional>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

using Change = std::function<void(const QString &path)>;

void moveAway(const QString &path)
{
    if (!QFile::rename(path, path + u".aside"_s)) {
        qFatal("Cannot move the folder away");
    }
}

} // namespace

class ImageStorageServiceTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void theFolderIsMadeWithThoseAboveIt()
    {
        QVERIFY(!QFileInfo::exists(m_home->path(u"Pictures"_s)));
        const QByteArray output = standardOutputOf([this] { const ImageStorageService storage{covers()}; });
        QVERIFY(QFileInfo{covers()}.isDir());
        QCOMPARE(output, QByteArray{});
        QVERIFY(files().isEmpty());
    }

    void anExistingFolderIsKept()
    {
        addCover(u"mine.txt"_s);
        const ImageStorageService storage{covers()};
        QCOMPARE(files(), QStringList{u"mine.txt"_s});
    }

    void theNameIsTheMomentAndFourDigits()
    {
        ImageStorageService storage{covers()};
        std::optional<QString> path;
        const QDateTime before = QDateTime::currentDateTime();
        const QByteArray output = standardOutputOf([&] { path = storage.saveImage(m_image); });
        const QDateTime after = QDateTime::currentDateTime();
        QCOMPARE(output, QByteArray{});
        QVERIFY(path.has_value());
        static const QRegularExpression form{QRegularExpression::anchoredPattern(
            uR"(~/Pictures/Quilmora/coverimg/cover_(\d{8}_\d{6})_([1-9]\d{3})\.png)"_s)};
        const QRegularExpressionMatch match = form.match(*path);
        QVERIFY2(match.hasMatch(), qPrintable(*path));
        const QString pattern = u"yyyyMMdd_HHmmss"_s;
        QVERIFY(before.toString(pattern) <= match.captured(1));
        QVERIFY(match.captured(1) <= after.toString(pattern));
        QCOMPARE(files(), QStringList{path->section(u'/', -1)});
    }

    void theDigitsAreAnyFrom1000To9999()
    {
        // The chance that one of the ninety hundreds is in none of 3000 numbers is below 1 to 10^12.
        constexpr int count = 3000;
        ImageStorageService storage{covers()};
        const QImage dot = samplePictures::picture({1, 1});
        QSet<int> hundreds;
        QStringList names;
        for (int i = 0; i < count; ++i) {
            names.append(storage.saveImage(dot).value_or(QString{}).section(u'/', -1));
            const QString digits = names.constLast().section(u'_', 3).chopped(4);
            QCOMPARE(digits.size(), 4);
            hundreds.insert(digits.toInt() / 100);
        }
        QCOMPARE(hundreds.size(), 90);
        QCOMPARE(*std::min_element(hundreds.cbegin(), hundreds.cend()), 10);
        QCOMPARE(*std::max_element(hundreds.cbegin(), hundreds.cend()), 99);
        // A cover takes the place of another one only where both have the same name.
        names.removeDuplicates();
        names.sort();
        QCOMPARE(files(), names);
    }

    void thePathHasTheFixedFormWhateverTheFolder()
    {
        ImageStorageService storage{m_home->path(u"别处/covers"_s)};
        const auto path = storage.saveImage(m_image);
        QVERIFY(path.has_value());
        QVERIFY(path->startsWith(u"~/Pictures/Quilmora/coverimg/cover_"_s));
        QVERIFY(QFile::exists(m_home->path(u"别处/covers/"_s) + path->section(u'/', -1)));
    }

    void aCoverIsStoredAsAPngLoadedAndDeleted()
    {
        ImageStorageService storage{covers()};
        const QString path = storage.saveImage(m_image).value_or(QString{});
        QCOMPARE(storage.loadImage(path), samplePictures::inSrgb(m_image));
        const QString wholePath = m_home->path() + path.sliced(1);
        QCOMPARE(storage.loadImage(wholePath), samplePictures::inSrgb(m_image));
        QFile file{wholePath};
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.read(8), QByteArray::fromHex("89504e470d0a1a0a"));
        storage.deleteImage(path);
        QVERIFY(storage.loadImage(path).isNull());
        QVERIFY(files().isEmpty());
    }

    void deletingLeavesOtherFiles()
    {
        ImageStorageService storage{covers()};
        const QString kept = storage.saveImage(m_image).value_or(QString{});
        const QString byWholePath = samplePictures::write(m_home->path(u"a.png"_s), "x");
        const QByteArray output = standardOutputOf([&] {
            storage.deleteImage(byWholePath);
            storage.deleteImage(u"~/Pictures/Quilmora/coverimg/missing.png"_s);
            storage.deleteImage(QString{});
        });
        QCOMPARE(output, QByteArray{});
        QVERIFY(!QFile::exists(byWholePath));
        QCOMPARE(files(), QStringList{kept.section(u'/', -1)});
    }

    void theSharedInstanceUsesThePicturesFolder()
    {
        const auto outcome = childProcess::run([this] {
            ImageStorageService &storage = ImageStorageService::shared();
            const bool saved = storage.saveImage(m_image).has_value();
            _exit(saved && &storage == &ImageStorageService::shared() ? 0 : 1);
        });
        QCOMPARE(outcome, childProcess::succeeded());
        QCOMPARE(files().size(), 1);
    }

    void withoutItsFolderNothingIsStored_data()
    {
        const DataRows<Change, QByteArray> row{"change", "reason"};
        row("gone", moveAway, "No such file or directory");
        row(
            "a file",
            [](const QString &path) {
                moveAway(path);
                samplePictures::write(path, "somebody's");
            },
            "Not a directory");
        row(
            "read-only", [](const QString &path) { setMode(path, 0555); }, "Permission denied");
    }

    void withoutItsFolderNothingIsStored()
    {
        QFETCH(const Change, change);
        QFETCH(const QByteArray, reason);
        addCover(u"a.png"_s);
        // Nothing but the service itself keeps the folder from being made again.
        setMode(m_home->path(u"Pictures/Quilmora"_s), 0777);
        const QString aside = covers() + u".aside"_s;
        const auto outcome = childProcess::run([&] {
            ImageStorageService storage{covers()};
            change(covers());
            childProcess::becomeOrdinaryUser();
            _exit(storage.saveImage(samplePictures::picture({50, 50})) ? 1 : 0);
        });
        QCOMPARE(outcome, childProcess::succeeded("保存图片失败: " + reason + '\n'));
        const QString kept = QFileInfo::exists(aside) ? aside : covers();
        QCOMPARE(QDir{kept}.entryList(QDir::Files), QStringList{u"a.png"_s});
        QCOMPARE(QFileInfo::exists(covers()), !reason.startsWith("No such"));
        QCOMPARE(QFileInfo{covers()}.isFile(), reason.startsWith("Not a"));
    }

    void anImageThatCannotBeEncodedGivesNoPathNoFileAndNoLine()
    {
        ImageStorageService storage{covers()};
        std::optional<QString> path;
        QCOMPARE(standardOutputOf([&] { path = storage.saveImage(QImage{}); }), QByteArray{});
        QVERIFY(!path.has_value());
        QVERIFY(QDir{covers()}.isEmpty());
    }

    void whatIsNoPictureIsNotLoadedAndNothingIsPrinted()
    {
        const ImageStorageService storage{covers()};
        const QString path = addCover(u"a.png"_s);
        bool absent = false;
        const QByteArray output = standardOutputOf([&] {
            absent = storage.loadImage(path).isNull() && storage.loadImage(covers()).isNull() &&
                     storage.loadImage(path + u"2"_s).isNull();
        });
        QVERIFY(absent);
        QCOMPARE(output, QByteArray{});
    }

    void afterAFailureTheNextCoverIsSaved()
    {
        const QImage image = samplePictures::picture({50, 50});
        ImageStorageService storage{covers()};
        QVERIFY(QDir{covers()}.removeRecursively());
        standardOutputOf([&] { storage.saveImage(image); });
        QVERIFY(QDir{}.mkpath(covers()));
        QVERIFY(storage.saveImage(image).has_value());
        QCOMPARE(QDir{covers()}.entryList(QDir::Files).size(), 1);
    }

private:
    QStringList files() const
    {
        return QDir{covers()}.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const QImage m_image = samplePictures::picture({64, 48});
};

QUILMORA_TEST(ImageStorageServiceTest, runCoreTest)
#include "ImageStorageServiceTest.moc"
