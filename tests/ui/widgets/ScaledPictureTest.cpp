#include "ui/widgets/ScaledPicture.h"

#include "support/SamplePictures.h"
#include "support/ScreenTest.h"

using namespace quilmora;
using namespace quilmora::test;

class ScaledPictureTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyAnotherSizeResolutionOrPictureIsScaledAnew()
    {
        ScaledPicture picture{10};
        picture.setImage(samplePictures::plain({400, 300}, Qt::darkGreen));
        const qint64 key = picture.pixmap({40, 30}, 2.0).cacheKey();
        QCOMPARE(picture.pixmap({40, 30}, 2.0).cacheKey(), key);
        QCOMPARE(picture.pixmap({40, 30}, 2.0).cacheKey(), key);
        QVERIFY(picture.pixmap({44, 33}, 2.0).cacheKey() != key);
        QCOMPARE(picture.pixmap({44, 33}, 2.0).size(), QSize(88, 66));
        // As many pixels, but of another size.
        const QPixmap coarse = picture.pixmap({88, 66}, 1.0);
        QCOMPARE(coarse.size(), QSize(88, 66));
        QCOMPARE(coarse.devicePixelRatio(), 1.0);
        picture.setImage(samplePictures::plain({400, 300}, Qt::darkGreen));
        QVERIFY(picture.pixmap({88, 66}, 1.0).cacheKey() != coarse.cacheKey());
    }

    void thePictureFitsIntoTheBoxInItsProportions()
    {
        ScaledPicture picture{10};
        QVERIFY(picture.isNull());
        QVERIFY(picture.fittedSize({100, 100}).isEmpty());
        QVERIFY(picture.pixmap({100, 100}, 1.0).isNull());
        picture.setImage(samplePictures::plain({400, 300}, Qt::darkGreen));
        QCOMPARE(picture.fittedSize({600, 500}), QSize(600, 450));
        QCOMPARE(picture.fittedSize({600, 90}), QSize(120, 90));
        picture.setImage(samplePictures::plain({5000, 2}));
        QCOMPARE(picture.fittedSize({100, 100}), QSize(100, 1));
    }

    void theCornersAreRound()
    {
        ScaledPicture picture{10};
        picture.setImage(samplePictures::plain({400, 300}, Qt::darkGreen));
        const QImage shown = picture.pixmap({80, 60}, 1.0).toImage();
        for (const QPoint corner : {QPoint{0, 0}, QPoint{79, 0}, QPoint{0, 59}, QPoint{79, 59}}) {
            QCOMPARE(shown.pixelColor(corner).alpha(), 0);
        }
        QCOMPARE(shown.pixelColor(40, 0).alpha(), 255);
        QCOMPARE(shown.pixelColor(10, 10), QColor(Qt::darkGreen));
    }
};

QUILMORA_TEST(ScaledPictureTest, runScreenTest)

#include "ScaledPictureTest.moc"
