#include "gallery/Backstage.h"

#include "demo_pictures/DemoPictures.h"
#include "generation/CoverInputs.h"
#include "generation/CoverPrompt.h"
#include "local_service/cover/CoverComposer.h"
#include "local_service/http/PictureRequest.h"
#include "support/SamplePictures.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::gallery
{
namespace
{

constexpr qsizetype hugeFile = qsizetype{15} * 1024 * 1024;

LocalServiceOptions answeringAfter(std::chrono::milliseconds delay)
{
    LocalServiceOptions options;
    options.key = Backstage::key();
    options.delay = delay;
    return options;
}

} // namespace

Backstage::Backstage() : quick{answeringAfter(0ms)}, slow{answeringAfter(1h)}
{
    if (!folder.isValid() || quick.start() == 0 || slow.start() == 0) {
        qFatal("The gallery cannot be set up");
    }
    demoPictures::writePresenter(presenterPhoto());
    demoPictures::writeSampleCover(sampleCover());
    test::samplePictures::write(hugePhoto(), test::samplePictures::pngOfSize(hugeFile));
}

QString Backstage::key()
{
    return u"local-gallery-key"_s;
}

QString Backstage::cover(const QString &title, const QString &scene, QSize size)
{
    const QString name = u"%1-%2-%3x%4"_s.arg(title, scene).arg(size.width()).arg(size.height());
    QString &path = covers[name];
    if (path.isEmpty()) {
        CoverInputs inputs{.selectedSize = CoverSize::presets().constFirst(),
                           .titleText = title,
                           .sceneText = scene,
                           .selectedEmotion = Emotion::presets().constFirst(),
                           .customEmotion = {},
                           .faceImage = QImage{presenterPhoto()},
                           .styleImage = {},
                           .advancedText = {}};
        PictureRequest request;
        request.prompt = composePrompt(inputs);
        request.size = size;
        request.watermark = false;
        request.images = {inputs.faceImage};
        path = folder.filePath(u"cover-%1.png"_s.arg(covers.size()));
        constexpr int fastest = 100;
        if (!coverComposer::compose(request).save(path, nullptr, fastest)) {
            qFatal("Cannot write %s", qUtf8Printable(path));
        }
    }
    return path;
}

} // namespace quilmora::gallery
