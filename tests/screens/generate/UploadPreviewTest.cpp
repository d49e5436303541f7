#include "GenerateScreen.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/SamplePictures.h"

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// How high the face of an upload card is, by its picture and its width.
class UploadPreviewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<GenerateScreen>(); }
    void cleanup() { screen.reset(); }
    void aFlatPictureHasItsOwnHeight_data();
    void aFlatPictureHasItsOwnHeight();
    void noPictureIsHigherThanTheInvitation_data();
    void noPictureIsHigherThanTheInvitation();
    void theFlattestPictureCanBeClicked();
    void theHeightFollowsTheWidth();
    void cardsSideBySideBeginAtTheSameHeight();

private:
    QAbstractButton *face() { return screen->find<QAbstractButton>(u"人脸形象（必填）"_s); }
    QAbstractButton *styleFace()
    {
        return screen->find<QAbstractButton>(u"风格参考（上传示例封面，非必填）"_s);
    }
    void pick(QAbstractButton *button, QSize size);
    /// Whether the face's only picture takes all of its width and height.
    bool isFilled();

    std::unique_ptr<GenerateScreen> screen;
};

void UploadPreviewTest::pick(QAbstractButton *button, QSize size)
{
    screen->panels.answerReference(samplePictures::write(screen->home.path(u"a.png"_s),
                                                         samplePictures::png(samplePictures::picture(size))));
    click(button);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

bool UploadPreviewTest::isFilled()
{
    const QList<DrawnPixmap> pixmaps = Drawing{face()}.pixmaps();
    return pixmaps.size() == 1 && pixmaps.constFirst().place == QRectF{face()->rect()};
}

void UploadPreviewTest::aFlatPictureHasItsOwnHeight_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("20 to 1") << QSize{3000, 150};
    QTest::newRow("4 to 1") << QSize{4000, 1000};
    QTest::newRow("tiny") << QSize{40, 2};
}

void UploadPreviewTest::aFlatPictureHasItsOwnHeight()
{
    QFETCH(const QSize, size);
    pick(face(), size);
    const int expected = face()->width() * size.height() / size.width();
    QVERIFY(expected > 10 && expected < 140);
    QCOMPARE(face()->height(), expected);
    QVERIFY(isFilled());
    QCOMPARE(placement::gapBelow(face(), screen->find(u"移除"_s)), 8);
    click(screen->find(u"移除"_s));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCOMPARE(face()->height(), 140);
}

void UploadPreviewTest::noPictureIsHigherThanTheInvitation_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("landscape") << QSize{160, 90};
    QTest::newRow("square") << QSize{10, 10};
    QTest::newRow("portrait") << QSize{60, 90};
    QTest::newRow("upright line") << QSize{1, 1000};
}

void UploadPreviewTest::noPictureIsHigherThanTheInvitation()
{
    QFETCH(const QSize, size);
    QCOMPARE(face()->height(), 140);
    pick(face(), size);
    QCOMPARE(face()->height(), 140);
    const QList<DrawnPixmap> pixmaps = Drawing{face()}.pixmaps();
    QCOMPARE(pixmaps.size(), 1);
    QCOMPARE(pixmaps.constFirst().place.height(), 140.0);
}

void UploadPreviewTest::theFlattestPictureCanBeClicked()
{
    pick(face(), {10'000, 1});
    QVERIFY2(face()->height() >= 8 && face()->height() < 20, qPrintable(QString::number(face()->height())));
    QCOMPARE(Drawing{face()}.pixmaps().constFirst().place.size(), QSizeF(face()->width(), 1));
    screen->panels.answerReference(std::nullopt);
    click(face());
    QCOMPARE(screen->panels.referencePanelCount(), 2);
}

void UploadPreviewTest::theHeightFollowsTheWidth()
{
    pick(face(), {3000, 300});
    const int before = face()->width();
    for (const int width : {1400, 800, 1000}) {
        screen->window.resize(width, 1100);
        QTRY_COMPARE(screen->view->width(), width);
        QTRY_COMPARE(face()->height(), face()->width() / 10);
        QVERIFY(isFilled());
    }
    QCOMPARE(face()->width(), before);
}

void UploadPreviewTest::cardsSideBySideBeginAtTheSameHeight()
{
    pick(face(), {3000, 150});
    QVERIFY(face()->height() < 140);
    QCOMPARE(styleFace()->height(), 140);
    QCOMPARE(placement::inWindow(face()).top(), placement::inWindow(styleFace()).top());
    pick(styleFace(), {3000, 1000});
    QCOMPARE(styleFace()->height(), 140);
    QCOMPARE(placement::inWindow(face()).top(), placement::inWindow(styleFace()).top());
}

int main(int argc, char *argv[])
{
    return runScreenTest<UploadPreviewTest>(argc, argv);
}

#include "UploadPreviewTest.moc"
