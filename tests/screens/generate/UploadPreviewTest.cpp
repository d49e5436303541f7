#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/GenerateScreen.h"
#include "support/Placement.h"

using namespace quilmora;
using namespace quilmora::test;

/// The picture on an upload card, and the card's height, which follows from picture and width.
class UploadPreviewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<GenerateScreen>(); }
    void cleanup() { m_screen.reset(); }

    void aPictureFitsTheCard_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("isFlat"); // So that it fills the width at less than the usual height.
        QTest::newRow("20 to 1") << QSize{3000, 150} << true;
        QTest::newRow("4 to 1") << QSize{4000, 1000} << true;
        QTest::newRow("tiny") << QSize{40, 2} << true;
        QTest::newRow("landscape") << QSize{160, 90} << false;
        QTest::newRow("square") << QSize{10, 10} << false;
        QTest::newRow("portrait") << QSize{600, 900} << false;
        QTest::newRow("upright line") << QSize{1, 1000} << false;
    }

    void aPictureFitsTheCard()
    {
        QFETCH(const QSize, size);
        QFETCH(const bool, isFlat);
        QCOMPARE(face()->height(), 140);
        m_screen->pick(face(), size);
        const int ownHeight = face()->width() * size.height() / size.width();
        QCOMPARE(ownHeight > 10 && ownHeight < 140, isFlat);
        QCOMPARE(face()->height(), isFlat ? ownHeight : 140);
        QCOMPARE(isFilled(), isFlat);
        const QList<DrawnPixmap> pixmaps = Drawing{face()}.pixmaps();
        QCOMPARE(pixmaps.size(), 1);
        const QRectF place = pixmaps.constFirst().place;
        QCOMPARE(place.height(), 1.0 * face()->height());
        const double width = std::max(1.0, place.height() * size.width() / size.height());
        QVERIFY(isFlat || std::abs(place.width() - width) <= 1);
        QVERIFY(placement::centredAcross(place, face()->rect()));
        if (place.width() > 20 && place.height() > 20) {
            QCOMPARE(CornerShape{pixmaps.constFirst().leftHalf()}.differenceFromCircle(10), QString{});
        }
        QCOMPARE(placement::gapBelow(face(), m_screen->find(texts::remove)), 8);
        click(m_screen->find(texts::remove));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QCOMPARE(face()->height(), 140);
    }

    void theFlattestPictureCanBeClicked()
    {
        m_screen->pick(face(), {10'000, 1});
        QVERIFY2(face()->height() >= 8 && face()->height() < 20,
                 qPrintable(QString::number(face()->height())));
        QCOMPARE(Drawing{face()}.pixmaps().constFirst().place.size(), QSizeF(face()->width(), 1));
        m_screen->panels.answerReference(std::nullopt);
        click(face());
        QCOMPARE(m_screen->panels.referencePanelCount(), 2);
    }

    void theHeightFollowsTheWidth()
    {
        m_screen->pick(face(), {3000, 300});
        const int before = face()->width();
        for (const int width : {1400, 800, 1000}) {
            m_screen->window.resize(width, 1100);
            QTRY_COMPARE(m_screen->view->width(), width);
            QTRY_COMPARE(face()->height(), face()->width() / 10);
            QVERIFY(isFilled());
        }
        QCOMPARE(face()->width(), before);
    }

    void cardsSideBySideBeginAtTheSameHeight()
    {
        QAbstractButton *style = m_screen->stylePicture();
        m_screen->pick(face(), {3000, 150});
        QVERIFY(face()->height() < 140);
        QCOMPARE(style->height(), 140);
        QCOMPARE(placement::inWindow(face()).top(), placement::inWindow(style).top());
        m_screen->pick(style, {3000, 1000});
        QCOMPARE(style->height(), 140);
        QCOMPARE(placement::inWindow(face()).top(), placement::inWindow(style).top());
    }

private:
    QAbstractButton *face() { return m_screen->facePhoto(); }

    /// Whether the face's only picture takes all of its width and height.
    bool isFilled()
    {
        const QList<DrawnPixmap> pixmaps = Drawing{face()}.pixmaps();
        return pixmaps.size() == 1 && pixmaps.constFirst().place == QRectF{face()->rect()};
    }

    std::unique_ptr<GenerateScreen> m_screen;
};

QUILMORA_TEST(UploadPreviewTest, runScreenTest)

#include "UploadPreviewTest.moc"
