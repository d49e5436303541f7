#include "ClickToWireBench.h"

#include "BenchWindow.h"
#include "FirstByteListener.h"
#include "QtPng.h"
#include "Report.h"
#include "SamplePhotos.h"
#include "imaging/ImageCodec.h"

#include <QAbstractButton>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

QString written(const QTemporaryDir &folder, const QString &name, const QImage &image)
{
    QString path = folder.filePath(name);
    constexpr int quality = 93;
    if (!image.save(path, "jpeg", quality)) {
        qFatal("Cannot write a photo");
    }
    return path;
}

/// Milliseconds from the click on the button to the first byte that the service receives.
double clickToWire(const QString &face, const QString &style)
{
    const FirstByteListener listener;
    BenchWindow bench{listener.address()};
    bench.typeTitle(u"标题"_s);
    bench.pickFace(face);
    bench.pickStyle(style);
    auto *button = qobject_cast<QAbstractButton *>(bench.control(u"开始生成封面"_s));
    const auto start = FirstByteListener::Clock::now();
    QTest::mouseClick(button, Qt::LeftButton);
    if (!QTest::qWaitFor([&listener] { return listener.firstByte().has_value(); }, 60'000)) {
        qFatal("Nothing was sent");
    }
    return std::chrono::duration<double, std::milli>{*listener.firstByte() - start}.count();
}

/// What a program would do without effort: Qt's PNG, its base64, and a JSON document.
double withTheToolkit(const QList<QImage> &images)
{
    return millisecondsOf([&images] {
        QJsonArray urls;
        for (const QImage &image : images) {
            urls.append(QString{u"data:image/png;base64,"_s + QString::fromLatin1(qtPng(image).toBase64())});
        }
        const QJsonObject members{{u"model"_s, u"m"_s}, {u"prompt"_s, u"p"_s}, {u"image"_s, urls}};
        if (QJsonDocument{members}.toJson(QJsonDocument::Compact).isEmpty()) {
            qFatal("No body");
        }
    });
}

} // namespace

void benchClickToWire()
{
    const QTemporaryDir folder;
    const QString face = written(folder, u"face.jpg"_s, samplePhoto(Scene::portrait, {4000, 3000}));
    const QString style = written(folder, u"style.jpg"_s, sampleCover(Scene::street, {2848, 1600}, false));
    const QList<QImage> images{imageCodec::decodeFile(face), imageCodec::decodeFile(style)};
    constexpr int runs = 5;
    constexpr double goal = 1.0 / 8;
    const Pair times = medianPair(
        runs, [&] { return clickToWire(face, style); }, [&] { return withTheToolkit(images); });
    report(u"click to first byte sent, against encoding with Qt"_s, times.ours, times.baseline, goal);
}

} // namespace quilmora::bench
