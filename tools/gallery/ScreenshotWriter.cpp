#include "gallery/ScreenshotWriter.h"

#include "gallery/ApplicationFixture.h"
#include "gallery/ScreenshotPlan.h"

namespace quilmora::gallery {
namespace {

/// Less packed than usual, in a third of the time.
constexpr int quality = 80;

void write(const QImage &picture, const QString &path)
{
    if (picture.isNull() || !picture.save(path, nullptr, quality)) {
        qFatal("Cannot write %s", qUtf8Printable(path));
    }
}

void present(ApplicationFixture &stage, const Scene &scene, const View &view)
{
    stage.dismissOverlay();
    if (view.whole) {
        stage.showWhole(view.size.width());
    } else {
        stage.show(view.size, scene.lookAt);
    }
    if (scene.finish) {
        scene.finish(stage);
    }
}

} // namespace

void takePictures(const Scene &scene, const ScreenshotPlan &plan, SceneResources &resources,
                  const QString &folder)
{
    Theme::current().setScheme(plan.schemes.constFirst());
    ApplicationFixture stage;
    scene.prepare(stage, resources);
    const int ratio = qRound(stage.window()->devicePixelRatioF());
    for (const View &view : plan.views(scene)) {
        present(stage, scene, view);
        for (const ColorScheme scheme : plan.schemes) {
            Theme::current().setScheme(scheme);
            stage.settle();
            write(stage.picture(), folder + u'/' + pictureName(scene, view, scheme, ratio));
        }
    }
}

} // namespace quilmora::gallery
