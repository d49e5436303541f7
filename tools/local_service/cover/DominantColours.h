#pragma once

#include <QColor>

#include <optional>
#include <utility>

class QImage;

/// What colours a picture lives by.
namespace quilmora::dominantColours
{

/// The two colours of `picture` that are strong by saturation and by area, the second of a clearly different
/// hue if the picture has one, else a lighter companion. Both are bright enough to serve as accents. Nothing
/// for a picture without colour.
std::optional<std::pair<QColor, QColor>> find(const QImage &picture);

} // namespace quilmora::dominantColours
