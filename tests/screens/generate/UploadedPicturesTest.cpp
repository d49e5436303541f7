#include "screens/common/Theme.h"
#include "screens/generate/UploadCard.h"
#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFilePanels.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QFile>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// What picture files of every kind become on an upload card, and how often they are read.
class UploadedPicturesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void brokenFilesEmptyTheCard_data();
    void brokenFilesEmptyTheCard();
    void everyKindOfPictureIsTaken_data();
    void everyKindOfPictureIsTaken();
    void aSidewaysPhotoStandsUpright();
    void theFirstPictureOfAnAnimationIsTaken();
    void everyPathIsRead_data();
    void everyPathIsRead();
    void thePreviewFitsInsideTheFaceWithRoundCorners();
    void theFileIsReadOnceHoweverOftenTheCardIsPainted();
    void paintingAgainTakesTheScaledPictureAgain();

private:
    QAbstractButton *face() { return accessible::find<QAbstractButton>(window.get(), u"照片"_s); }
    /// Picks a file of that name with these bytes.
    QString pick(const QString &name, const QByteArray &bytes);

    const TemporaryHome home;
    ScriptedFilePanels panels;
    std::unique_ptr<QWidget> window;
    UploadCard *card = nullptr;
};

void UploadedPicturesTest::init()
{
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    card = new UploadCard{u"照片"_s, u"square.and.arrow.up"_s, panels, window.get()};
    column->addWidget(card);
    showWindow(*window, {480, 320});
}

QString UploadedPicturesTest::pick(const QString &name, const QByteArray &bytes)
{
    QString path = samplePictures::write(home.path(name), bytes);
    panels.answerReference(path);
    click(face());
    return path;
}

void UploadedPicturesTest::brokenFilesEmptyTheCard_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray png = samplePictures::png(samplePictures::picture({200, 200}));
    QTest::newRow("0 bytes") << QByteArray{};
    QTest::newRow("half a PNG") << png.first(png.size() / 2);
    QTest::newRow("the first bytes of a PNG") << png.first(20);
    QTest::newRow("a text") << QByteArray{"<svg xmlns='http://www.w3.org/2000/svg'/>"};
}

void UploadedPicturesTest::brokenFilesEmptyTheCard()
{
    QFETCH(const QByteArray, bytes);
    pick(u"good.png"_s, samplePictures::png(samplePictures::picture({60, 40})));
    QVERIFY(!card->image().isNull());
    pick(u"bad.png"_s, bytes);
    QVERIFY(card->image().isNull());
    QCOMPARE(accessible::names(window.get()).count(u"移除"_s), 0);
}

void UploadedPicturesTest::everyKindOfPictureIsTaken_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    const QImage picture = samplePictures::picture({60, 40});
    const QSize size = picture.size();
    QTest::newRow("PNG") << u"a.png"_s << samplePictures::png(picture) << size;
    QTest::newRow("JPEG") << u"a.jpg"_s << samplePictures::jpeg(picture) << size;
    QTest::newRow("JPEG named PNG") << u"b.png"_s << samplePictures::jpeg(picture) << size;
    QTest::newRow("PNG named JPEG") << u"b.jpeg"_s << samplePictures::png(picture) << size;
    QTest::newRow("no suffix") << u"picture"_s << samplePictures::png(picture) << size;
    QTest::newRow("16 bits") << u"deep.png"_s
                             << samplePictures::png(picture.convertToFormat(QImage::Format_RGBA64)) << size;
    QTest::newRow("palette") << u"palette.png"_s
                             << samplePictures::png(picture.convertToFormat(QImage::Format_Indexed8)) << size;
    QTest::newRow("grey") << u"grey.png"_s
                          << samplePictures::png(picture.convertToFormat(QImage::Format_Grayscale8)) << size;
    QTest::newRow("black and white") << u"mono.png"_s
                                     << samplePictures::png(picture.convertToFormat(QImage::Format_Mono))
                                     << size;
    QTest::newRow("CMYK") << u"print.jpg"_s << samplePictures::cmykJpeg() << QSize{8, 8};
    QTest::newRow("animated") << u"moving.gif"_s << samplePictures::animatedGif() << QSize{2, 2};
    QTest::newRow("one pixel") << u"dot.png"_s << samplePictures::png(samplePictures::picture({1, 1}))
                               << QSize{1, 1};
    QTest::newRow("very wide") << u"wide.png"_s << samplePictures::png(samplePictures::picture({5000, 2}))
                               << QSize{5000, 2};
}

void UploadedPicturesTest::everyKindOfPictureIsTaken()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, bytes);
    pick(name, bytes);
    QTEST(card->image().size(), "size");
    // Painting it must do, too.
    QVERIFY(!screenCapture::capture(face(), 2.0).isNull());
}

void UploadedPicturesTest::aSidewaysPhotoStandsUpright()
{
    pick(u"phone.jpg"_s, samplePictures::sidewaysJpeg(samplePictures::picture({80, 40})));
    QCOMPARE(card->image().size(), QSize(40, 80));
    // The mark of the top left corner has come to the top right one.
    QVERIFY(screenCapture::isClose(card->image().pixelColor(37, 3), Qt::red, 40));
}

void UploadedPicturesTest::theFirstPictureOfAnAnimationIsTaken()
{
    pick(u"moving.gif"_s, samplePictures::animatedGif());
    QCOMPARE(card->image().pixelColor(0, 0), QColor(Qt::red));
}

void UploadedPicturesTest::everyPathIsRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Chinese") << u"图片/我的照片.png"_s;
    QTest::newRow("blanks") << u" my  photo .png"_s;
    QTest::newRow("quotes") << u"it's \"mine\".png"_s;
    QTest::newRow("emoji") << u"自拍🤳🏽.png"_s;
    QTest::newRow("percent and hash") << u"100%20#1?.png"_s;
    QTest::newRow("hidden") << u".photo"_s;
}

void UploadedPicturesTest::everyPathIsRead()
{
    QFETCH(const QString, name);
    pick(name, samplePictures::png(samplePictures::picture({60, 40})));
    QCOMPARE(card->image().size(), QSize(60, 40));
}

void UploadedPicturesTest::thePreviewFitsInsideTheFaceWithRoundCorners()
{
    QImage picture{300, 600, QImage::Format_RGB32};
    picture.fill(QColor{0, 200, 0});
    pick(u"tall.png"_s, samplePictures::png(picture));
    face()->clearFocus();
    const QImage shown = screenCapture::capture(face(), 1.0);
    QCOMPARE(face()->height(), 140);
    const int left = (face()->width() - 70) / 2;
    QCOMPARE(screenCapture::colorAt(shown, {left + 35.0, 70}), QColor(0, 200, 0));
    QCOMPARE(screenCapture::colorAt(shown, {left + 2.0, 70}), QColor(0, 200, 0));
    QCOMPARE(screenCapture::colorAt(shown, {left - 3.0, 70}).alpha(), 0);
    QCOMPARE(screenCapture::colorAt(shown, {left + 1.0, 1}).alpha(), 0);
}

void UploadedPicturesTest::theFileIsReadOnceHoweverOftenTheCardIsPainted()
{
    const QString path = pick(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}, Qt::red)));
    const QImage before = screenCapture::capture(face());
    samplePictures::write(path, samplePictures::png(samplePictures::picture({60, 40}, Qt::blue)));
    QCOMPARE(screenCapture::capture(face()), before);
    QVERIFY(QFile::remove(path));
    window->resize(520, 330);
    QVERIFY(!card->image().isNull());
    QTRY_COMPARE(face()->width(), card->width());
    QVERIFY(screenCapture::countOf(screenCapture::capture(face()), Qt::red, {}, 30) > 100);
}

void UploadedPicturesTest::paintingAgainTakesTheScaledPictureAgain()
{
    // A picture that takes a while to scale: any painting that scaled it would take about as long as the
    // first one.
    QImage large{8000, 6000, QImage::Format_RGB32};
    large.fill(Qt::darkCyan);
    pick(u"large.png"_s, samplePictures::png(large));
    QElapsedTimer clock;
    clock.start();
    QImage first = screenCapture::capture(face());
    const qint64 firstTime = clock.nsecsElapsed();
    constexpr int rounds = 20;
    clock.restart();
    for (int i = 0; i < rounds; ++i) {
        QCOMPARE(screenCapture::capture(face()), first);
    }
    const qint64 laterTime = clock.nsecsElapsed() / rounds;
    QVERIFY2(laterTime * 3 < firstTime, qPrintable(u"%1 ns, then %2 ns"_s.arg(firstTime).arg(laterTime)));
}

int main(int argc, char *argv[])
{
    return runScreenTest<UploadedPicturesTest>(argc, argv);
}

#include "UploadedPicturesTest.moc"
