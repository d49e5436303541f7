#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Shadow.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/LogoView.h"
#include "ui/widgets/PictureView.h"

#include <QFile>
#include <QPainter>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// The shadow of `shape` alone, drawn on a sheet of 120 x 120.
QImage shadowOf(const QPainterPath &shape)
{
    QImage sheet{120, 120, QImage::Format_ARGB32};
    sheet.fill(Qt::transparent);
    QPainter painter{&sheet};
    const Shadow shadow{Qt::black, 4, {0, 0}};
    shadow.draw(painter, shape);
    return sheet;
}

} // namespace

/// The logo, scaled pictures and shadows.
class PicturesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void theFirstReadableFileIsTaken()
    {
        const QStringList folders{m_home->path(u"none"_s), m_home->path(u"first"_s),
                                  m_home->path(u"second"_s)};
        const QString asset = m_home->path(u"asset.png"_s);
        // From the last place to the first.
        const QImage symbol =
            Symbol::pixmap(u"sparkles.rectangle.stack.fill"_s, 28, themeColor(ColorRole::primaryText), 1.0)
                .toImage();
        QVERIFY(!screenCapture::isPlain(symbol, symbol.rect()));
        QCOMPARE(logo(folders, asset), symbol);
        samplePictures::write(asset, "not a picture");
        QCOMPARE(logo(folders, asset), symbol);
        plainFile(u"asset.png"_s, Qt::blue);
        QCOMPARE(middle(logo(folders, asset)), QColor(Qt::blue));
        samplePictures::write(m_home->path(u"second/AppLogo.png"_s), "not a picture");
        QCOMPARE(middle(logo(folders, asset)), QColor(Qt::blue));
        plainFile(u"second/AppLogo.png"_s, Qt::green);
        QCOMPARE(middle(logo(folders, asset)), QColor(Qt::green));
        samplePictures::write(m_home->path(u"first/AppLogo.png"_s), "not a picture");
        QCOMPARE(middle(logo(folders, asset)), QColor(Qt::green));
        plainFile(u"first/AppLogo.png"_s, Qt::red);
        QCOMPARE(middle(logo(folders, asset)), QColor(Qt::red));
    }

    void aSmallLogoIsReadFromTheSmallAsset()
    {
        const QString asset = plainFile(u"asset.png"_s, Qt::blue);
        plainFile(u"asset-64.png"_s, Qt::red);
        plainFile(u"asset-128.png"_s, Qt::green);
        QCOMPARE(middle(logo({}, asset, 1.0)), QColor(Qt::red));
        QCOMPARE(middle(logo({}, asset, 2.0)), QColor(Qt::green));
        QCOMPARE(middle(logo({}, asset, 3.0)), QColor(Qt::blue));
    }

    void theApplicationsAssetIsThereAndEverySizeLooksAlike()
    {
        const QImage ours = logoPixmap(28, 6, 1.0).toImage();
        QVERIFY(ours != logo({}, m_home->path(u"none.png"_s)));
        QCOMPARE(middle(ours).alpha(), 255);
        const QString alone = m_home->path(u"alone.png"_s);
        QVERIFY(QFile::copy(LogoFiles{}.assetPath, alone));
        for (const double ratio : {1.0, 2.0}) {
            const QImage fromSmall = logo({}, LogoFiles{}.assetPath, ratio);
            const QImage fromLarge = logo({}, alone, ratio);
            QVERIFY(fromSmall != fromLarge);
            QCOMPARE(screenCapture::countDifferent(fromSmall, fromLarge), 0);
        }
    }

    void thePictureIsSharpFittedAndRound()
    {
        const QString asset = plainFile(u"asset.png"_s, Qt::blue, {80, 40});
        const QImage shown = logo({}, asset, 2.0);
        QCOMPARE(shown.size(), QSize(56, 56));
        QCOMPARE(shown.devicePixelRatio(), 2.0);
        QCOMPARE(shown.pixelColor(28, 16), QColor(Qt::blue));
        QCOMPARE(shown.pixelColor(28, 11).alpha(), 0);
        const QImage square = logo({}, plainFile(u"square.png"_s, Qt::red), 2.0);
        QCOMPARE(square.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(square.pixelColor(28, 0).alpha(), 255);
    }

    void onlyAnotherSizeResolutionOrPictureIsScaledAnew()
    {
        ScaledPicture picture{10};
        QVERIFY(picture.isNull());
        QVERIFY(picture.fittedSize({100, 100}).isEmpty());
        QVERIFY(picture.pixmap({100, 100}, 1.0).isNull());
        picture.setImage(samplePictures::plain({400, 300}, Qt::darkGreen));
        QCOMPARE(picture.fittedSize({600, 500}), QSize(600, 450));
        QCOMPARE(picture.fittedSize({600, 90}), QSize(120, 90));
        const qint64 key = picture.pixmap({40, 30}, 2.0).cacheKey();
        QCOMPARE(picture.pixmap({40, 30}, 2.0).cacheKey(), key);
        QCOMPARE(picture.pixmap({40, 30}, 2.0).cacheKey(), key);
        QVERIFY(picture.pixmap({44, 33}, 2.0).cacheKey() != key);
        QCOMPARE(picture.pixmap({44, 33}, 2.0).size(), QSize(88, 66));
        // As many pixels, but of another size.
        const QPixmap coarse = picture.pixmap({88, 66}, 1.0);
        QCOMPARE(coarse.size(), QSize(88, 66));
        QCOMPARE(coarse.devicePixelRatio(), 1.0);
        const QImage shown = coarse.toImage();
        for (const QPoint corner : {QPoint{0, 0}, QPoint{87, 0}, QPoint{0, 65}, QPoint{87, 65}}) {
            QCOMPARE(shown.pixelColor(corner).alpha(), 0);
        }
        QCOMPARE(shown.pixelColor(44, 0).alpha(), 255);
        QCOMPARE(shown.pixelColor(10, 10), QColor(Qt::darkGreen));
        picture.setImage(samplePictures::plain({400, 300}, Qt::darkGreen));
        QVERIFY(picture.pixmap({88, 66}, 1.0).cacheKey() != coarse.cacheKey());
    }

    void everyShapeHasItsShadowWhereverItLies()
    {
        const QRectF bounds{30, 30, 60, 60};
        const int square = shadowOf(roundedRect(bounds, 2)).pixelColor(32, 32).alpha();
        const int round = shadowOf(roundedRect(bounds, 30)).pixelColor(32, 32).alpha();
        QVERIFY2(square > round + 40, qPrintable(u"%1 and %2"_s.arg(square).arg(round)));
        QCOMPARE(shadowOf(roundedRect(bounds, 2)).pixelColor(32, 32).alpha(), square);
        const QImage first = shadowOf(roundedRect({20, 20, 60, 40}, 9));
        const QImage second = shadowOf(roundedRect({37, 45, 60, 40}, 9));
        QCOMPARE(second.copy(17 + 5, 25 + 5, 80, 60), first.copy(5, 5, 80, 60));
    }

private:
    QString plainFile(const QString &name, const QColor &color, QSize size = {64, 64})
    {
        return samplePictures::writePng(m_home->path(name), samplePictures::plain(size, color));
    }

    QImage logo(const QStringList &folders, const QString &asset, double ratio = 1.0)
    {
        return logoPixmap(28, 6, ratio, {folders, asset}).toImage();
    }
    static QColor middle(const QImage &image)
    {
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }

    std::unique_ptr<TemporaryHome> m_home;
};

QUILMORA_TEST(PicturesTest, runScreenTest)
#include "PicturesTest.moc"
