#include "ui/theme/Shadow.h"

#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Shapes.h"

#include <QPainter>

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

class ShadowTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itReachesBeyondTheShapeAndFades()
    {
        const QImage shadow = shadowOf(roundedRect({30, 30, 60, 60}, 8));
        QVERIFY(shadow.pixelColor(60, 60).alpha() > 240);
        const int edge = shadow.pixelColor(30, 60).alpha();
        QVERIFY(edge > 60 && edge < 200);
        QVERIFY(shadow.pixelColor(28, 60).alpha() < edge);
        QCOMPARE(shadow.pixelColor(15, 60).alpha(), 0);
    }

    void shapesOfTheSameBoundsHaveTheirOwnShadows()
    {
        const QRectF bounds{30, 30, 60, 60};
        const int square = shadowOf(roundedRect(bounds, 2)).pixelColor(32, 32).alpha();
        const int round = shadowOf(roundedRect(bounds, 30)).pixelColor(32, 32).alpha();
        QVERIFY2(square > round + 40, qPrintable(QStringLiteral("%1 and %2").arg(square).arg(round)));
        QCOMPARE(shadowOf(roundedRect(bounds, 2)).pixelColor(32, 32).alpha(), square);
    }

    void theSameShapeElsewhereHasTheSameShadow()
    {
        const QImage first = shadowOf(roundedRect({20, 20, 60, 40}, 9));
        const QImage second = shadowOf(roundedRect({37, 45, 60, 40}, 9));
        QCOMPARE(second.copy(17 + 5, 25 + 5, 80, 60), first.copy(5, 5, 80, 60));
    }
};

QUILMORA_TEST(ShadowTest, runScreenTest)

#include "ShadowTest.moc"
