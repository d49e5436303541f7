#include "support/HistoryScreen.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// On a screen with more pixels than device-independent ones, whole or not.
class HistoryResolutionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picturesAreDrawnAtTheScreensResolution()
    {
        HistoryScreen screen;
        // Lines one pixel wide: they survive only if no pixel of the screen is skipped or smeared.
        screen.addCovers(1);
        screen.open();
        const double ratio = screen.grid()->devicePixelRatioF();
        QCOMPARE(ratio, qEnvironmentVariable("QT_SCALE_FACTOR").toDouble());
        const int side = qRound(screen.tileRect(0).width() * ratio);
        QImage lines{{side, side}, QImage::Format_RGB32};
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                lines.setPixel(x, y, x % 2 == 0 ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
            }
        }
        samplePictures::write(screen.coverFile(u"0.png"_s), samplePictures::png(lines));
        QVERIFY(screen.waitUntilFilled());
        const QImage picture = screen.picture();
        const QRect tile = screen.tileRect(0);
        const int left = qRound(tile.left() * ratio);
        const int y = qRound((tile.top() + tile.width() / 2.0) * ratio);
        for (int x = 20; x < side - 20; ++x) {
            const int expected = x % 2 == 0 ? 0 : 255;
            QCOMPARE(qRed(picture.pixel(left + x, y)), expected);
        }
    }
};

QUILMORA_TEST(HistoryResolutionTest, runScreenTest)
#include "HistoryResolutionTest.moc"
