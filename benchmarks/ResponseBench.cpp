#include "ResponseBench.h"

#include "BenchWindow.h"
#include "Report.h"
#include "generation/ResponseParser.h"
#include "imaging/ImageCodec.h"
#include "support/ScriptedHttpServer.h"
#include "support/ScriptedResponse.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBuffer>
#include <QEvent>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <ctime>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

/// Milliseconds of processor time that this thread has used.
double threadTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Adds up what painting costs, until a control of that name has been painted.
class PaintTime final : public QObject
{
public:
    PaintTime(QWidget &window, QString name) : m_window{window}, m_name{std::move(name)}
    {
        m_window.installEventFilter(this);
    }

    void waitForTheEnd() { m_loop.exec(); }

    double milliseconds = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::UpdateRequest || m_isInside) {
            return false;
        }
        m_isInside = true;
        const double before = threadTime();
        QCoreApplication::sendEvent(watched, event);
        milliseconds += threadTime() - before;
        m_isInside = false;
        for (const auto *button : m_window.findChildren<QAbstractButton *>()) {
            if (button->isVisible() && button->accessibleName() == m_name) {
                m_loop.quit();
            }
        }
        return true;
    }

private:
    QWidget &m_window;
    const QString m_name;
    QEventLoop m_loop;
    bool m_isInside = false;
};

/// A picture that a service did not compress: large to receive and to decode, but soon written, so that the
/// time of writing can be taken off without leaving more of its noise than there is to measure.
QByteArray largeCover()
{
    QImage cover{3200, 2500, QImage::Format_RGB888};
    cover.fill(Qt::darkCyan);
    QBuffer png;
    constexpr int uncompressed = 100;
    cover.save(&png, "png", uncompressed);
    return png.data();
}

double writingTime(const QImage &cover)
{
    const QTemporaryDir folder;
    DatabaseManager database{folder.filePath(u"data"_s), folder.filePath(u"covers"_s)};
    ImageStorageService storage{folder.filePath(u"covers"_s)};
    constexpr int runs = 5;
    return medianOf(runs, [&] {
        const double before = threadTime();
        const auto path = storage.saveImage(cover);
        database.insertHistory(u"prompt"_s, path.value(), u"model"_s);
        return threadTime() - before;
    });
}

/// The main thread's time from the sent request to the painted result, without its painting.
double timeBesidePainting(const QByteArray &answer, const QString &photo)
{
    const test::ScriptedHttpServer server{[&answer](const auto &) {
        return test::ScriptedResponse::whole(answer);
    }};
    BenchWindow bench{server.url().toString()};
    bench.typeTitle(u"标题"_s);
    bench.pickFace(photo);
    PaintTime painting{bench.window(), u"保存图片"_s};
    qobject_cast<QAbstractButton *>(bench.control(u"开始生成封面"_s))->click();
    const double before = threadTime();
    const double paintedBefore = painting.milliseconds;
    painting.waitForTheEnd();
    return threadTime() - before - (painting.milliseconds - paintedBefore);
}

/// The base64 of a picture of few pixels: behind its end a picture file may carry anything.
QByteArray manyBytesOfSmallPicture()
{
    QImage picture{16, 16, QImage::Format_RGB888};
    picture.fill(Qt::darkCyan);
    QBuffer png;
    picture.save(&png, "png");
    constexpr qsizetype further = 22'500'000;
    const QByteArray file = png.data() + QByteArray(further, 'x');
    return file.toBase64();
}

QImage pictureByQt(const QByteArray &response)
{
    const QJsonObject object = QJsonDocument::fromJson(response).object();
    const QString text = object[u"data"_s][0][u"b64_json"_s].toString();
    const auto bytes = QByteArray::fromBase64Encoding(
        text.toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return imageCodec::decode(*bytes);
}

void benchParsing()
{
    const QByteArray response = R"({"data":[{"b64_json":")" + manyBytesOfSmallPicture() + R"("}]})";
    const auto noResource = [](const QUrl &) {
        return std::optional<QByteArray>{};
    };
    constexpr int runs = 15;
    const Pair times = medianPair(
        runs, [&] { return millisecondsOf([&] { parseResponse(response, noResource); }); },
        [&] { return millisecondsOf([&] { pictureByQt(response); }); });
    report(u"parsing a 30 MB response, against QJsonDocument"_s, times.ours, times.baseline, 1.0);
}

} // namespace

void benchAnswer()
{
    benchParsing();
    const QTemporaryDir folder;
    const QString photo = folder.filePath(u"face.png"_s);
    QImage face{64, 64, QImage::Format_RGB32};
    face.fill(Qt::darkYellow);
    face.save(photo, "png");
    const QByteArray png = largeCover();
    const QByteArray answer = R"({"data":[{"b64_json":")" + png.toBase64() + R"("}]})";
    const QImage decoded = imageCodec::decode(png);
    constexpr int runs = 9;
    const Pair times = medianPair(
        runs, [&] { return timeBesidePainting(answer, photo); }, [&] { return writingTime(decoded); });
    constexpr double frame = 16;
    report(u"a 30 MB answer, the main thread beside painting and writing"_s, times.ours - times.baseline,
           frame, 1.0);
}

} // namespace quilmora::bench
