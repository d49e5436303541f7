#include "EncoderBench.h"

#include "QtPng.h"
#include "Report.h"
#include "SamplePhotos.h"
#include "imaging/ImageCodec.h"
#include "imaging/PngEncoder.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

/// How often a picture is encoded: small ones more often, since a restless moment of the machine can last
/// for several of their turns.
int runsFor(const QImage &image)
{
    constexpr qint64 smallArea = 8'000'000;
    return qint64{image.width()} * image.height() < smallArea ? 9 : 3;
}

/// At least eight times as fast, at no more than a tenth more bytes.
constexpr double timeGoal = 1.0 / 8;
constexpr double sizeGoal = 1.1;

constexpr QSize coverSize{2848, 1600};

struct Sample {
    QString name;
    std::function<QImage()> make;
};

QList<Sample> samples()
{
    return {
        {u"a cover of a face"_s,
         [] {
             return sampleCover(Scene::portrait, coverSize, true);
         }},
        {u"a cover of a street"_s,
         [] {
             return sampleCover(Scene::street, coverSize, true);
         }},
        {u"a cover that was never a JPEG"_s,
         [] {
             return sampleCover(Scene::meadow, coverSize, false);
         }},
        {u"a 12 MP photo of a face"_s,
         [] {
             return samplePhoto(Scene::portrait, {4000, 3000});
         }},
        {u"a 12 MP photo at night"_s,
         [] {
             return samplePhoto(Scene::night, {4000, 3000});
         }},
        {u"a 24 MP photo of a street"_s,
         [] {
             return samplePhoto(Scene::street, {6000, 4000});
         }},
        {u"a 48 MP photo of a meadow"_s,
         [] {
             return samplePhoto(Scene::meadow, {8000, 6000});
         }},
    };
}

double megabytes(const QByteArray &file) { return static_cast<double>(file.size()) / 1e6; }

/// Seconds from the start of encoding until the last byte of a request has left, at so many megabits a
/// second.
double uploadSeconds(double encodingMilliseconds, const QByteArray &file, double megabits)
{
    constexpr double base64 = 4.0 / 3;
    constexpr double bits = 8;
    return encodingMilliseconds / 1000 + megabytes(file) * base64 * bits / megabits;
}

struct Encoded {
    QString way;
    double milliseconds;
    QByteArray file;
};

void benchSample(const Sample &sample)
{
    const QImage image = sample.make();
    const int runs = runsFor(image);
    QByteArray ours;
    QByteArray toolkits;
    const Pair times = medianPair(
        runs, [&] { return millisecondsOf([&] { ours = imageCodec::encodePng(image); }); },
        [&] { return millisecondsOf([&] { toolkits = qtPng(image); }); });
    report(u"encoding %1, against Qt"_s.arg(sample.name), times.ours, times.baseline, timeGoal);
    reportSize(u"encoding %1, its size against Qt"_s.arg(sample.name), megabytes(ours), megabytes(toolkits),
               sizeGoal);

    QList<Encoded> ways{{u"ours"_s, times.ours, ours}};
    for (const int level : {1, 2, 6}) {
        QByteArray file;
        const double milliseconds =
            medianMilliseconds(runs, [&] { file = pngEncoder::encode(image, level); });
        ways.append({u"level %1"_s.arg(level), milliseconds, file});
    }
    ways.append({u"Qt"_s, times.baseline, toolkits});
    for (const int megabits : {20, 100}) {
        QList<Figure> figures;
        for (const Encoded &way : ways) {
            figures.append({way.way, uploadSeconds(way.milliseconds, way.file, megabits)});
        }
        reportFigures(u"  encoded and uploaded at %1 Mbit/s"_s.arg(megabits), figures);
    }
}

} // namespace

void benchEncoder()
{
    for (const Sample &sample : samples()) {
        benchSample(sample);
    }
}

} // namespace quilmora::bench
