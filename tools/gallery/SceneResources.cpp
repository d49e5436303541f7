#include "gallery/SceneResources.h"

#include "demo_pictures/DemoPictures.h"
#include "generation/GenerationRequest.h"
#include "local_service/cover/CoverComposer.h"
#include "local_service/http/PictureRequest.h"
#include "model/CoverInputs.h"
#include "support/SamplePictures.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::gallery {
namespace {

constexpr qsizetype hugeFile = qsizetype{15} * 1024 * 1024;

localservice::LocalServiceOptions answeringAfter(std::chrono::milliseconds delay)
{
    localservice::LocalServiceOptions options;
    options.key = SceneResources::key();
    options.delay = delay;
    return options;
}

} // namespace

SceneResources::SceneResources() : m_quick{answeringAfter(0ms)}, m_slow{answeringAfter(1h)}
{
    if (!m_folder.isValid() || m_quick.start() == 0 || m_slow.start() == 0) {
        qFatal("The gallery cannot be set up");
    }
    demoPictures::writePresenter(presenterPhoto());
    demoPictures::writeSampleCover(sampleCover());
    test::samplePictures::write(hugePhoto(), test::samplePictures::pngOfSize(hugeFile));
}

QString SceneResources::key() { return u"local-gallery-key"_s; }

QString SceneResources::cover(const QString &title, const QString &scene, QSize size)
{
    const QString name = u"%1-%2-%3x%4"_s.arg(title, scene).arg(size.width()).arg(size.height());
    QString &path = m_covers[name];
    if (path.isEmpty()) {
        CoverInputs inputs{.selectedSize = CoverSize::presets().constFirst(),
                           .titleText = title,
                           .sceneText = scene,
                           .selectedEmotion = Emotion::presets().constFirst(),
                           .customEmotion = {},
                           .faceImage = QImage{presenterPhoto()},
                           .styleImage = {},
                           .advancedText = {}};
        localservice::PictureRequest request;
        request.prompt = composePrompt(inputs);
        request.size = size;
        request.watermark = false;
        request.images = {inputs.faceImage};
        path = m_folder.filePath(u"cover-%1.png"_s.arg(m_covers.size()));
        constexpr int fastest = 100;
        if (!localservice::coverComposer::compose(request).save(path, nullptr, fastest)) {
            qFatal("Cannot write %s", qUtf8Printable(path));
        }
    }
    return path;
}

} // namespace quilmora::gallery
