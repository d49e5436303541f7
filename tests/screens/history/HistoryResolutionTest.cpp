#include "HistoryScreen.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// On a screen with two pixels for each device-independent one.
class HistoryResolutionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picturesAreDrawnAtTheScreensResolution();
};

void HistoryResolutionTest::picturesAreDrawnAtTheScreensResolution()
{
    HistoryScreen screen;
    // Lines one pixel wide: they survive only if no pixel of the screen is skipped or smeared.
    screen.addCovers(1);
    screen.open();
    QCOMPARE(screen.grid()->devicePixelRatioF(), 2.0);
    const int side = screen.tileRect(0).width() * 2;
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
    const int y = (tile.top() + tile.width() / 2) * 2;
    for (int x = 20; x < side - 20; ++x) {
        const int expected = x % 2 == 0 ? 0 : 255;
        QCOMPARE(qRed(picture.pixel(tile.left() * 2 + x, y)), expected);
    }
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    return runScreenTest<HistoryResolutionTest>(argc, argv);
}
#include "HistoryResolutionTest.moc"
