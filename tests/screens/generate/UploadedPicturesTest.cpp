#include "screens/generate/UploadCard.h"
#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFileDialogs.h"
#include "support/Texts.h"
#include "ui/theme/Theme.h"

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
    void init()
    {
        m_window = std::make_unique<QWidget>();
        auto *column = new QVBoxLayout{m_window.get()};
        m_card = new UploadCard{u"照片"_s, u"square.and.arrow.up"_s, m_panels, m_window.get()};
        column->addWidget(m_card);
        showWindow(*m_window, {480, 320});
    }

    void cleanup() { m_window.reset(); }

    void everyKindOfPictureIsTaken_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QSize>("size");
        const QImage picture = samplePictures::picture({60, 40});
        const auto row = [&](const char *title, const QString &file, const QByteArray &bytes,
                             QSize expected = {60, 40}) {
            QTest::newRow(title) << file << bytes << expected;
        };
        const auto inFormat = [&](QImage::Format format) {
            return samplePictures::png(picture.convertToFormat(format));
        };
        const auto ofSize = [](QSize side) {
            return samplePictures::png(samplePictures::picture(side));
        };
        row("PNG", u"a.png"_s, samplePictures::png(picture));
        row("JPEG", u"a.jpg"_s, samplePictures::jpeg(picture));
        row("JPEG named PNG", u"b.png"_s, samplePictures::jpeg(picture));
        row("PNG named JPEG", u"b.jpeg"_s, samplePictures::png(picture));
        row("no suffix", u"picture"_s, samplePictures::png(picture));
        row("16 bits", u"deep.png"_s, inFormat(QImage::Format_RGBA64));
        row("palette", u"palette.png"_s, inFormat(QImage::Format_Indexed8));
        row("grey", u"grey.png"_s, inFormat(QImage::Format_Grayscale8));
        row("black and white", u"mono.png"_s, inFormat(QImage::Format_Mono));
        row("CMYK", u"print.jpg"_s, samplePictures::cmykJpeg(), {8, 8});
        row("animated", u"moving.gif"_s, samplePictures::animatedGif(), {2, 2});
        row("one pixel", u"dot.png"_s, ofSize({1, 1}), {1, 1});
        row("very wide", u"wide.png"_s, ofSize({5000, 2}), {5000, 2});
    }

    void everyKindOfPictureIsTaken()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        pick(name, bytes);
        QTEST(m_card->image().size(), "size");
        // Painting it must do, too.
        QVERIFY(!screenCapture::capture(face(), 2.0).isNull());
    }

    void aSidewaysPhotoStandsUpright()
    {
        pick(u"phone.jpg"_s, samplePictures::sidewaysJpeg(samplePictures::picture({80, 40})));
        QCOMPARE(m_card->image().size(), QSize(40, 80));
        // The mark of the top left corner has come to the top right one.
        QVERIFY(screenCapture::isClose(m_card->image().pixelColor(37, 3), Qt::red, 40));
    }

    void theFirstPictureOfAnAnimationIsTaken()
    {
        pick(u"moving.gif"_s, samplePictures::animatedGif());
        QCOMPARE(m_card->image().pixelColor(0, 0), QColor(Qt::red));
    }

    void everyPathIsRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("Chinese") << u"图片/我的照片.png"_s;
        QTest::newRow("blanks") << u" my  photo .png"_s;
        QTest::newRow("quotes") << u"it's \"mine\".png"_s;
        QTest::newRow("emoji") << u"自拍🤳🏽.png"_s;
        QTest::newRow("percent and hash") << u"100%20#1?.png"_s;
        QTest::newRow("hidden") << u".photo"_s;
    }

    void everyPathIsRead()
    {
        QFETCH(const QString, name);
        pick(name, samplePictures::png(samplePictures::picture({60, 40})));
        QCOMPARE(m_card->image().size(), QSize(60, 40));
    }

    void theFileIsReadOnceHoweverOftenTheCardIsPainted()
    {
        const QString path =
            pick(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}, Qt::red)));
        const QImage before = screenCapture::capture(face());
        samplePictures::writePng(path, samplePictures::picture({60, 40}, Qt::blue));
        QCOMPARE(screenCapture::capture(face()), before);
        QVERIFY(QFile::remove(path));
        m_window->resize(520, 330);
        QVERIFY(!m_card->image().isNull());
        QTRY_COMPARE(face()->width(), m_card->width());
        QVERIFY(screenCapture::countOf(screenCapture::capture(face()), Qt::red, {}, 30) > 100);
    }

    void paintingAgainTakesTheScaledPictureAgain()
    {
        // A picture that takes a while to scale: any painting that scaled it would take about as long as the
        // first one.
        pick(u"large.png"_s, samplePictures::png(samplePictures::plain({8000, 6000}, Qt::darkCyan)));
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

private:
    QAbstractButton *face() { return accessible::find<QAbstractButton>(m_window.get(), u"照片"_s); }

    /// Picks a file of that name with these bytes.
    QString pick(const QString &name, const QByteArray &bytes)
    {
        QString path = samplePictures::write(m_home.path(name), bytes);
        m_panels.answerReference(path);
        click(face());
        return path;
    }

    const TemporaryHome m_home;
    ScriptedFileDialogs m_panels;
    std::unique_ptr<QWidget> m_window;
    UploadCard *m_card = nullptr;
};

QUILMORA_TEST(UploadedPicturesTest, runScreenTest)

#include "UploadedPicturesTest.moc"
