#pragma once

#include <QPainterPath>
#include <QString>

/// The heavy face that covers are lettered in. Functions may be called from any thread.
namespace quilmora::localservice::titleFont {

/// `text` without the signs that have no outline (emoji, control characters); every line break is a '\n'.
QString drawable(const QString &text);

/// How wide `text` is at a size of one pixel.
double widthPerPixel(const QString &text);

/// The outline of `text` at `pixelSize` pixels, beginning at the origin on the base line.
QPainterPath outline(const QString &text, double pixelSize);

} // namespace quilmora::localservice::titleFont
