#include "local_service/cover/DominantColours.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <algorithm>

using namespace quilmora;

namespace
{

QImage plain(const QColor &colour)
{
    QImage image{60, 40, QImage::Format_RGB32};
    image.fill(colour);
    return image;
}

bool hueIsNear(const QColor &colour, int hue)
{
    const int distance = std::abs(colour.hsvHue() - hue);
    return std::min(distance, 360 - distance) <= 6;
}

} // namespace

class DominantColoursTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLargestStrongColourComesFirst();
    void theSecondHasAnotherHue();
    void onePlainColourGetsACompanion();
    void aGreyPictureHasNone();
    void darkColoursBecomeBrightAccents();
    void transparentPartsDoNotCount();
};

void DominantColoursTest::theLargestStrongColourComesFirst()
{
    QImage image = plain(QColor{220, 30, 30});
    QPainter{&image}.fillRect(0, 0, 60, 8, QColor{30, 60, 220});
    const auto found = dominantColours::find(image);
    QVERIFY(found.has_value());
    QVERIFY(hueIsNear(found->first, 0));
}

void DominantColoursTest::theSecondHasAnotherHue()
{
    QImage image = plain(QColor{220, 30, 30});
    QPainter{&image}.fillRect(0, 0, 60, 12, QColor{240, 60, 30});
    QPainter{&image}.fillRect(0, 30, 60, 6, QColor{30, 60, 220});
    const auto found = dominantColours::find(image);
    QVERIFY(found.has_value());
    QVERIFY(hueIsNear(found->second, 231));
}

void DominantColoursTest::onePlainColourGetsACompanion()
{
    const auto found = dominantColours::find(plain(QColor{40, 200, 90}));
    QVERIFY(found.has_value());
    QVERIFY(hueIsNear(found->first, 139));
    QVERIFY(found->first != found->second);
}

void DominantColoursTest::aGreyPictureHasNone()
{
    QVERIFY(!dominantColours::find(plain(QColor{128, 128, 128})).has_value());
    QVERIFY(!dominantColours::find(plain(Qt::white)).has_value());
}

void DominantColoursTest::darkColoursBecomeBrightAccents()
{
    const auto found = dominantColours::find(plain(QColor{20, 20, 90}));
    QVERIFY(found.has_value());
    QVERIFY(found->first.value() >= 225);
}

void DominantColoursTest::transparentPartsDoNotCount()
{
    QImage image{60, 40, QImage::Format_ARGB32};
    image.fill(QColor{255, 0, 0, 0});
    QPainter{&image}.fillRect(0, 0, 60, 4, QColor{20, 200, 40});
    const auto found = dominantColours::find(image);
    QVERIFY(found.has_value());
    QVERIFY(hueIsNear(found->first, 127));
}

QTEST_GUILESS_MAIN(DominantColoursTest)

#include "DominantColoursTest.moc"
