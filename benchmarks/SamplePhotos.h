#pragma once

#include "SampleScene.h"

#include <QImage>
#include <QSize>

namespace quilmora::bench {

/// A picture such as a camera makes it: light that falls off, surfaces with texture, edges, writing, and
/// grain that is stronger in the dark. It has been through JPEG, like every photo of a telephone. The same on
/// every machine.
QImage samplePhoto(Scene scene, QSize size);

/// A cover such as the image service makes it: a photo with hardly any grain, a darkened band and a title in
/// large outlined letters. Through JPEG or not, since services send both.
QImage sampleCover(Scene scene, QSize size, bool throughJpeg);

} // namespace quilmora::bench
