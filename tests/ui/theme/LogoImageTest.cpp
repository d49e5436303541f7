#include "ui/theme/LogoImage.h"

#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"

#include <QFile>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class LogoImageTest final : public QObject
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

    void theApplicationsOwnAssetIsThere()
    {
        const QImage ours = logoPixmap(28, 6, 1.0, {}).toImage();
        QVERIFY(ours != logo({}, m_home->path(u"none.png"_s)));
        QCOMPARE(middle(ours).alpha(), 255);
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

    void ofTheApplicationsAssetEverySizeLooksAlike()
    {
        const QString alone = m_home->path(u"alone.png"_s);
        QVERIFY(QFile::copy(logoAssetPath(), alone));
        for (const double ratio : {1.0, 2.0}) {
            const QImage fromSmall = logo({}, logoAssetPath(), ratio);
            const QImage fromLarge = logo({}, alone, ratio);
            QVERIFY(fromSmall != fromLarge);
            for (int y = 0; y < fromSmall.height(); ++y) {
                for (int x = 0; x < fromSmall.width(); ++x) {
                    constexpr int tolerance = 24;
                    QVERIFY(screenCapture::isClose(fromSmall.pixelColor(x, y), fromLarge.pixelColor(x, y),
                                                   tolerance));
                }
            }
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

private:
    QString plainFile(const QString &name, const QColor &color, QSize size = {64, 64})
    {
        return samplePictures::writePng(m_home->path(name), samplePictures::plain(size, color));
    }

    QImage logo(const QStringList &folders, const QString &asset, double ratio = 1.0)
    {
        return logoPixmap(28, 6, ratio, folders, asset).toImage();
    }
    static QColor middle(const QImage &image)
    {
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }

    std::unique_ptr<TemporaryHome> m_home;
};

QUILMORA_TEST(LogoImageTest, runScreenTest)

#include "LogoImageTest.moc"
