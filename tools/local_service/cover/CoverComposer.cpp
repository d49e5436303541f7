#include "local_service/cover/CoverComposer.h"

#include "local_service/cover/BadgePainter.h"
#include "local_service/cover/CoverLayout.h"
#include "local_service/cover/DominantColours.h"
#include "local_service/cover/PresenterPainter.h"
#include "local_service/cover/PromptReader.h"
#include "local_service/cover/SceneBackground.h"
#include "local_service/cover/TitleLayout.h"
#include "local_service/cover/TitlePainter.h"

#include <QPainter>
#include <QRadialGradient>

#include <cmath>

namespace quilmora::coverComposer
{
namespace
{

void paintVignette(QPainter &cover, QSize size, const ColourPalette &palette)
{
    const QPointF centre{size.width() / 2.0, size.height() / 2.0};
    QRadialGradient vignette{centre, std::hypot(centre.x(), centre.y())};
    vignette.setColorAt(0.6, faded(palette.deep, 0));
    vignette.setColorAt(1, faded(mixed(palette.deep, Qt::black, 0.5), 0.5));
    cover.fillRect(QRect{QPoint{}, size}, vignette);
}

ColourPalette choosePalette(const SceneBackground &background, const QList<QImage> &images)
{
    const ColourPalette palette = background.palette();
    if (images.size() < 2) {
        return palette;
    }
    const auto colours = dominantColours::find(images[1]);
    return colours ? palette.accentedBy(colours->first, colours->second) : palette;
}

} // namespace

QImage compose(const PictureRequest &request)
{
    const CoverPrompt prompt = promptReader::read(request.prompt);
    const bool hasPresenter = !request.images.isEmpty();
    CoverLayout layout = CoverLayout::of(request.size, true, hasPresenter);
    const TitleLayout title{prompt.title, layout.title.size(), layout.mostLines};
    if (title.lines().isEmpty()) {
        layout = CoverLayout::of(request.size, false, hasPresenter);
    }
    const SceneBackground background{prompt.scene, prompt.style, prompt.title};
    const ColourPalette palette = choosePalette(background, request.images);

    QImage image{request.size, QImage::Format_RGB32};
    QPainter cover{&image};
    cover.setRenderHint(QPainter::Antialiasing);
    background.paint(cover, request.size, layout.focus, palette);
    const TitlePainter titlePainter{title, layout, palette};
    titlePainter.paintGround(cover, request.size);
    paintVignette(cover, request.size, palette);
    if (hasPresenter) {
        PresenterPainter{request.images.first(), layout, palette}.paint(cover, request.size);
        badgePainter::paintExpression(cover, request.size, layout, palette, prompt.expression);
    }
    titlePainter.paintWords(cover, request.size);
    if (request.watermark) {
        badgePainter::paintWatermark(cover, request.size, layout);
    }
    return image;
}

} // namespace quilmora::coverComposer
