#pragma once

#include <QImage>
#include <QSize>

#include <random>

namespace quilmora::bench {

/// What a picture shows: how much of it is smooth, how much is edges and fine texture, and how grainy it is.
enum class Scene {
    portrait, ///< A face before a soft background, by daylight.
    street,   ///< Many edges, windows and writing.
    night,    ///< Dark, with coarse grain.
    meadow,   ///< A face, and fine texture over half of the picture.
};

/// The scene in clean colours, as it is before a camera looks at it.
QImage paintScene(Scene scene, QSize size, std::mt19937 &random);

} // namespace quilmora::bench
