#include "screens/generate/LoadingSection.h"
#include "screens/generate/MessageView.h"
#include "support/GenerateScreen.h"
#include "support/LaidOutText.h"
#include "support/PaintWatcher.h"
#include "support/SamplePictures.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr qsizetype megabyte = 1'048'576;

QByteArray htmlOfOneMegabyte(const QByteArray &lineEnd)
{
    QByteArray html{"<!DOCTYPE html>"};
    for (int i = 0; html.size() < megabyte; ++i) {
        html += "<tr><td>&amp; " + QByteArray::number(i) +
                " \xe9\x94\x99\xe8\xaf\xaf</td><img src='file:///etc/hostname'></tr>" + lineEnd;
    }
    return html;
}

} // namespace

/// Responses and pictures that are large enough to block the window.
class LongResponsesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anErrorPageOfAMegabyteIsShownWholeAndKeepsTheWindowUsable()
    {
        for (const QByteArray &lineEnd : {QByteArray{}, QByteArray{"\r\n"}}) {
            const QByteArray html = htmlOfOneMegabyte(lineEnd);
            GenerateScreen screen{GenerateScreen::respondWithText(html)};
            const QSize before = screen.window.size();
            QVERIFY(screen.fails());
            auto *message = screen.find<MessageView>(texts::errorMessage);
            QVERIFY(message != nullptr);
            QTRY_VERIFY(message->verticalScrollBar()->maximum() > 100);
            screen.window.repaint();
            message->verticalScrollBar()->setValue(message->verticalScrollBar()->maximum());
            screen.window.repaint();
            // A window that lays out all of it at once stands still for seconds.
            QVERIFY(laidOutCharacters(*message->document()) > 0);
            QVERIFY(laidOutCharacters(*message->document()) < megabyte / 10);
            QCOMPARE(screen.window.size(), before);
            QVERIFY(screen.view->widget()->width() <= screen.view->viewport()->width());
            QVERIFY(message->height() <= 320);

            message->selectAll();
            message->copy();
            QCOMPARE(QGuiApplication::clipboard()->text(), QString::fromUtf8(html));
            screen.goBack();
            QVERIFY(screen.titleField() != nullptr);
        }
    }

    void aResponseOfThirtyMegabytesWorks()
    {
        // Noise does not compress.
        QImage noise{3200, 2500, QImage::Format_RGB32};
        QRandomGenerator random{7};
        random.fillRange(reinterpret_cast<quint32 *>(noise.bits()), noise.sizeInBytes() / 4);
        noise = noise.convertToFormat(QImage::Format_RGB888);
        const QByteArray body = GenerateScreen::bodyWith(samplePictures::png(noise));
        QVERIFY(body.size() > 30 * megabyte);
        GenerateScreen screen{[body](const auto &) {
            return ScriptedResponse::whole(body);
        }};
        screen.generate();
        QTRY_VERIFY_WITH_TIMEOUT(screen.shows(texts::succeeded), 60000);
        QCOMPARE(screen.flow->generatedImage().size(), noise.size());
        QCOMPARE(screen.database.fetchAllHistory().size(), 1);
    }

    void theProgressIsPaintedBeforeThePicturesAreEncoded()
    {
        GenerateScreen screen;
        // A photo that is red until the progress is painted, so that what is sent tells when it was encoded.
        QList<QRgb> pixels(64, qRgb(255, 0, 0));
        const QImage photo{static_cast<const uchar *>(static_cast<const void *>(pixels.data())), 8, 8,
                           QImage::Format_RGB32};
        const PaintWatcher watcher{[&pixels](QWidget &widget, const QRegion &) {
            if (qobject_cast<LoadingSection *>(&widget) != nullptr) {
                pixels.fill(qRgb(0, 255, 0));
            }
        }};
        screen.flow->startGeneration(GenerateScreen::inputs(photo));
        QTRY_VERIFY(screen.shows(texts::succeeded));
        const QByteArray sent = screen.requestBody()[u"image"_s].toString().section(u',', 1).toLatin1();
        QCOMPARE(QImage::fromData(QByteArray::fromBase64(sent), "png").pixelColor(4, 4), QColor(0, 255, 0));
    }

    void pressingTheButtonPaintsTheProgressAlsoWithALargePhoto()
    {
        GenerateScreen screen{GenerateScreen::neverRespond()};
        screen.panels.answerReference(
            samplePictures::writePng(screen.home.path(u"photo.png"_s), samplePictures::plain({8000, 6000})));
        click(screen.facePhoto());
        typeInto(screen.titleField(), u"标题"_s);

        QSize painted;
        const PaintWatcher watcher{[&painted](QWidget &widget, const QRegion &) {
            painted = painted.isEmpty() && qobject_cast<LoadingSection *>(&widget) ? widget.size() : painted;
        }};
        click(screen.generateButton());
        QVERIFY(!painted.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(screen.server.requestCount(), 1, 60000);
        // It was painted where it stays.
        QCOMPARE(painted, screen.window.findChild<LoadingSection *>()->size());
    }
};

QUILMORA_TEST(LongResponsesTest, runScreenTest)
#include "LongResponsesTest.moc"
