#pragma once

#include <QFont>
#include <QPainterPath>
#include <QString>

/// The heavy face that covers are lettered in. Functions may be called from any thread.
namespace quilmora::titleFont
{

/// The face at `pixelSize` pixels, unhinted, so that lengths grow with the size.
QFont make(int pixelSize);

/// How wide `text` is at a size of one pixel.
double widthPerPixel(const QString &text);

/// The outline of `text` at `pixelSize` pixels, beginning at the origin on the base line.
QPainterPath outline(const QString &text, double pixelSize);

} // namespace quilmora::titleFont
