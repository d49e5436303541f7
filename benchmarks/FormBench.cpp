#include "FormBench.h"

#include "BenchWindow.h"
#include "Report.h"
#include "SamplePhotos.h"
#include "generation/GenerationRequest.h"
#include "imaging/ImageCodec.h"
#include "screens/generate/LoadingSection.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <ctime>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

QString writePhoto(const QTemporaryDir &folder, QSize size)
{
    QString path = folder.filePath(u"photo%1x%2.jpg"_s.arg(size.width()).arg(size.height()));
    if (!samplePhoto(Scene::portrait, size).save(path, "jpeg", 80)) {
        qFatal("Cannot write the photo");
    }
    return path;
}

/// Notes whether the loading section has been painted.
class LoadingPaint final : public QObject
{
public:
    LoadingPaint() { qApp->installEventFilter(this); }

    bool painted = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        painted =
            painted || (event->type() == QEvent::Paint && qobject_cast<LoadingSection *>(watched) != nullptr);
        return false;
    }
};

} // namespace

void benchLoadingBeforeEncoding(const QTemporaryDir &folder)
{
    const QString path = writePhoto(folder, {8000, 6000});
    BenchWindow bench;
    bench.typeTitle(u"标题"_s);
    bench.pickFace(path);
    const QImage face = imageCodec::decodeFile(path);
    const double encoding = medianMilliseconds(1, [&] { encodeRequestBody({{}, 1, 1, {face}, {}}); });

    auto *button = qobject_cast<QAbstractButton *>(bench.control(u"开始生成封面"_s));
    const LoadingPaint paint;
    const double clicking = medianMilliseconds(1, [button] { button->click(); });
    if (!paint.painted) {
        qFatal("The loading section was not painted before the click returned");
    }
    report(u"a click that paints the loading section, against encoding"_s, clicking, encoding, 0.05);
}

void benchPickingAPhoto(const QTemporaryDir &folder)
{
    const QString path = writePhoto(folder, {4000, 3000});
    BenchWindow bench;
    const double decoding = medianMilliseconds(5, [&] { imageCodec::decodeFile(path); });
    const double picking = medianMilliseconds(5, [&] { bench.pickFace(path); });
    report(u"picking a 12 MP photo, against decoding it once"_s, picking, decoding, 1.3);
}

void benchPaintingTheForm(const QTemporaryDir &folder)
{
    BenchWindow bench;
    constexpr int runs = 50;
    const auto paint = [&] {
        bench.window().repaint();
    };
    paint();
    const double without = medianMilliseconds(runs, paint);
    bench.pickFace(writePhoto(folder, {4000, 3000}));
    paint();
    const double with = medianMilliseconds(runs, paint);
    report(u"painting the form with a 12 MP photo, against without"_s, with, without, 1.5);
}

void benchIdle()
{
    BenchWindow bench;
    constexpr std::chrono::milliseconds span{3000};
    const auto waitFor = [](std::chrono::milliseconds time) {
        QEventLoop loop;
        QTimer::singleShot(time, &loop, &QEventLoop::quit);
        loop.exec();
    };
    waitFor(std::chrono::milliseconds{500});
    const std::clock_t before = std::clock();
    waitFor(span);
    const double used = 1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    report(u"processor time of an idle window, against time passed"_s, used,
           static_cast<double>(span.count()), 0.005);
}

} // namespace quilmora::bench
