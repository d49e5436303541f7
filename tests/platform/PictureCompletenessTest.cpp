#include "platform/PictureCompleteness.h"

#include "support/SamplePictures.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class PictureCompletenessTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatFollowsThePictureDoesNotMatter_data();
    void whatFollowsThePictureDoesNotMatter();
    void everyShorterFileIsCut_data();
    void everyShorterFileIsCut();
    void aThumbnailsEndIsNotThePicturesEnd();
    void lengthsThatLeadBeyondTheFileAreCuts();
    void otherFormatsAreLeftToTheirDecoders();
};

namespace
{

/// The smallest files with every kind of part: escaped bytes, restarts and fill bytes in the JPEG's data;
/// an extension and a colour table of the picture's own in the GIF.
QByteArray jpeg()
{
    return QByteArray::fromHex(
        "ffd8 ffe0 0004 ffd9 ffda 0003 00 12 ff00 34 ffd0 56 ffff d7 78 ffc4 0002 ffd9");
}

QByteArray gif()
{
    return QByteArray::fromHex("474946383961 0100 0100 80 00 00 000000ffffff 21fe 0161 00 21f9 04 00000000 00"
                               "2c 0000 0000 0100 0100 80 000000ffffff 02 02 4401 00");
}

QByteArray bmp()
{
    return QByteArray::fromHex("424d 0c000000 000000000000");
}

void addFormats()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QByteArray>("whole");
    QTest::newRow("JPEG") << QByteArray{"jpeg"} << jpeg();
    QTest::newRow("GIF") << QByteArray{"gif"} << gif();
    QTest::newRow("BMP") << QByteArray{"bmp"} << bmp();
}

} // namespace

void PictureCompletenessTest::whatFollowsThePictureDoesNotMatter_data()
{
    addFormats();
}

void PictureCompletenessTest::whatFollowsThePictureDoesNotMatter()
{
    QFETCH(const QByteArray, format);
    QFETCH(const QByteArray, whole);
    QVERIFY(holdsWholePicture(whole, format));
    QVERIFY(holdsWholePicture(whole + ';', format));
    QVERIFY(holdsWholePicture(whole + QByteArray(100, '\xff'), format));
}

void PictureCompletenessTest::everyShorterFileIsCut_data()
{
    addFormats();
}

void PictureCompletenessTest::everyShorterFileIsCut()
{
    QFETCH(const QByteArray, format);
    QFETCH(const QByteArray, whole);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        QVERIFY2(!holdsWholePicture(whole.first(length), format), qPrintable(QString::number(length)));
    }
}

void PictureCompletenessTest::aThumbnailsEndIsNotThePicturesEnd()
{
    const QByteArray thumbnail = samplePictures::jpeg(samplePictures::picture({8, 8}));
    const QByteArray segment = QByteArray::fromHex("ffe1") + static_cast<char>((thumbnail.size() + 2) / 256) +
                               static_cast<char>((thumbnail.size() + 2) % 256) + thumbnail;
    QByteArray photo = samplePictures::jpeg(samplePictures::picture({64, 48}));
    photo.insert(2, segment);
    QVERIFY(holdsWholePicture(photo, "jpeg"));
    QVERIFY(!holdsWholePicture(photo.first(photo.size() - 10), "jpeg"));
    QVERIFY(!holdsWholePicture(photo.first(segment.size() + 10), "jpeg"));
}

void PictureCompletenessTest::lengthsThatLeadBeyondTheFileAreCuts()
{
    QVERIFY(!holdsWholePicture(QByteArray::fromHex("ffd8 ffe0 ffff ffd9"), "jpeg"));
    QVERIFY(!holdsWholePicture(QByteArray::fromHex("474946383961 0100 0100 87 00 00 2c 00"), "gif"));
    QVERIFY(!holdsWholePicture(QByteArray::fromHex("424d ffffffff 0000"), "bmp"));
}

void PictureCompletenessTest::otherFormatsAreLeftToTheirDecoders()
{
    QVERIFY(holdsWholePicture("", "png"));
    QVERIFY(holdsWholePicture("RIFF", "webp"));
}

QTEST_GUILESS_MAIN(PictureCompletenessTest)
#include "PictureCompletenessTest.moc"
