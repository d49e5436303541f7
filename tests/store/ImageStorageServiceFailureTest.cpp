#include "StoreFixture.h"
#include "store/ImageStorageService.h"
#include "support/TestProgram.h"

#include <QFileInfo>
#include <QTest>

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

class ImageStorageServiceFailureTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void withoutItsFolderNothingIsStored_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("gone") << Change{moveAway} << QByteArray{"No such file or directory"};
        QTest::newRow("a file") << Change{[](const QString &path) {
            moveAway(path);
            samplePictures::write(path, "somebody's");
        }} << QByteArray{"Not a directory"};
        QTest::newRow("read-only") << Change{[](const QString &path) {
            setMode(path, 0555);
        }} << QByteArray{"Permission denied"};
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
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, "保存图片失败: " + reason + '\n');
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
};

QUILMORA_TEST(ImageStorageServiceFailureTest, runCoreTest)
#include "ImageStorageServiceFailureTest.moc"
