#include "StatesBench.h"

#include "Report.h"
#include "gallery/ApplicationFixture.h"
#include "gallery/Scene.h"
#include "gallery/SceneResources.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::bench {
namespace {

void runFor(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

/// Wake-ups in a second: the least of three, since a timer's rounding now and then adds one to those of the
/// measuring itself, while whatever beats steadily is in all three.
int wakeUps()
{
    int least = std::numeric_limits<int>::max();
    for (int run = 0; run < 3; ++run) {
        int count = 0;
        const auto counting = QObject::connect(QAbstractEventDispatcher::instance(),
                                               &QAbstractEventDispatcher::awake, [&count] { ++count; });
        runFor(1s);
        QObject::disconnect(counting);
        least = std::min(least, count);
    }
    return least;
}

int wakeUpsIn(const gallery::Scene &scene, gallery::SceneResources &resources)
{
    gallery::ApplicationFixture stage;
    scene.prepare(stage, resources);
    stage.show({1100, 1080}, scene.lookAt);
    if (scene.finish) {
        scene.finish(stage);
    }
    stage.settle();
    // What the last step has started comes to its end first.
    runFor(500ms);
    return wakeUps();
}

} // namespace

void benchStates()
{
    const int flashTime = QApplication::cursorFlashTime();
    QApplication::setCursorFlashTime(0);
    gallery::SceneResources resources;
    const int ofTheMeasuring = wakeUps();
    int most = 0;
    int generating = 0;
    for (const gallery::Scene &scene : gallery::allScenes()) {
        const int count = wakeUpsIn(scene, resources) - ofTheMeasuring;
        int &place = scene.name == u"loading"_s ? generating : most;
        place = std::max(place, count);
    }
    QApplication::setCursorFlashTime(flashTime);
    constexpr double mostWhileGenerating = 60;
    reportCount(u"wake-ups a second in the busiest state but generating"_s, most, 0);
    reportCount(u"wake-ups a second while generating"_s, generating, mostWhileGenerating);
}

} // namespace quilmora::bench
