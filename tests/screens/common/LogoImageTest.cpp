#include "screens/common/LogoImage.h"

#include "screens/common/Symbol.h"
#include "screens/common/Theme.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QFile>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class LogoImageTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theResourceFileComesFirst();
    void theFirstFolderWithAReadableFileWins();
    void anUnreadableResourceFileFallsThroughToTheAsset();
    void withoutAResourceFileTheAssetIsTaken();
    void withoutBothTheSymbolIsTaken();
    void anUnreadableAssetFallsThroughToTheSymbol();
    void theApplicationsOwnAssetIsThere();
    void aSmallLogoIsReadFromTheSmallAsset();
    void ofTheApplicationsAssetEverySizeLooksAlike();
    void theFileIsReadAnewEveryTime();
    void thePictureIsSharpFittedAndRound();

private:
    QString plainFile(const QString &name, const QColor &color, QSize size = {64, 64});
    QImage logo(const QStringList &folders, const QString &asset, double ratio = 1.0)
    {
        return logoPixmap(28, 6, ratio, folders, asset).toImage();
    }
    static QColor middle(const QImage &image)
    {
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }

    std::unique_ptr<TemporaryHome> home;
};

void LogoImageTest::init()
{
    home = std::make_unique<TemporaryHome>();
}

QString LogoImageTest::plainFile(const QString &name, const QColor &color, QSize size)
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(color);
    return samplePictures::write(home->path(name), samplePictures::png(image));
}

void LogoImageTest::theResourceFileComesFirst()
{
    plainFile(u"resources/AppLogo.png"_s, Qt::red);
    const QString asset = plainFile(u"asset.png"_s, Qt::blue);
    QCOMPARE(middle(logo({home->path(u"resources"_s)}, asset)), QColor(Qt::red));
}

void LogoImageTest::theFirstFolderWithAReadableFileWins()
{
    samplePictures::write(home->path(u"first/AppLogo.png"_s), "not a picture");
    plainFile(u"second/AppLogo.png"_s, Qt::green);
    const QString asset = plainFile(u"asset.png"_s, Qt::blue);
    QCOMPARE(middle(logo({home->path(u"none"_s), home->path(u"first"_s), home->path(u"second"_s)}, asset)),
             QColor(Qt::green));
}

void LogoImageTest::anUnreadableResourceFileFallsThroughToTheAsset()
{
    samplePictures::write(home->path(u"resources/AppLogo.png"_s), "not a picture");
    const QString asset = plainFile(u"asset.png"_s, Qt::blue);
    QCOMPARE(middle(logo({home->path(u"resources"_s)}, asset)), QColor(Qt::blue));
}

void LogoImageTest::withoutAResourceFileTheAssetIsTaken()
{
    const QString asset = plainFile(u"asset.png"_s, Qt::blue);
    QCOMPARE(middle(logo({home->path()}, asset)), QColor(Qt::blue));
}

void LogoImageTest::withoutBothTheSymbolIsTaken()
{
    const QImage symbol =
        Symbol::pixmap(u"sparkles.rectangle.stack.fill"_s, 28, themeColor(ColorRole::primaryText), 1.0)
            .toImage();
    QVERIFY(screenCapture::countOf(symbol, Qt::transparent) < symbol.width() * symbol.height());
    QCOMPARE(logo({home->path()}, home->path(u"none.png"_s)), symbol);
}

void LogoImageTest::anUnreadableAssetFallsThroughToTheSymbol()
{
    const QString asset = samplePictures::write(home->path(u"asset.png"_s), "not a picture");
    QCOMPARE(logo({}, asset), logo({}, home->path(u"none.png"_s)));
}

void LogoImageTest::theApplicationsOwnAssetIsThere()
{
    const QImage ours = logoPixmap(28, 6, 1.0, {}).toImage();
    QVERIFY(ours != logo({}, home->path(u"none.png"_s)));
    QCOMPARE(middle(ours).alpha(), 255);
}

void LogoImageTest::aSmallLogoIsReadFromTheSmallAsset()
{
    const QString asset = plainFile(u"asset.png"_s, Qt::blue);
    plainFile(u"asset-64.png"_s, Qt::red);
    plainFile(u"asset-128.png"_s, Qt::green);
    QCOMPARE(middle(logo({}, asset, 1.0)), QColor(Qt::red));
    QCOMPARE(middle(logo({}, asset, 2.0)), QColor(Qt::green));
    QCOMPARE(middle(logo({}, asset, 3.0)), QColor(Qt::blue));
}

void LogoImageTest::ofTheApplicationsAssetEverySizeLooksAlike()
{
    const QString alone = home->path(u"alone.png"_s);
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

void LogoImageTest::theFileIsReadAnewEveryTime()
{
    const QStringList folders{home->path(u"resources"_s)};
    plainFile(u"resources/AppLogo.png"_s, Qt::red);
    QCOMPARE(middle(logo(folders, {})), QColor(Qt::red));
    plainFile(u"resources/AppLogo.png"_s, Qt::green);
    QCOMPARE(middle(logo(folders, {})), QColor(Qt::green));
}

void LogoImageTest::thePictureIsSharpFittedAndRound()
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

int main(int argc, char *argv[])
{
    return runScreenTest<LogoImageTest>(argc, argv);
}

#include "LogoImageTest.moc"
