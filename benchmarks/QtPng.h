#pragma once

#include <QByteArray>
#include <QImage>

namespace quilmora::bench {

/// `image` as a PNG file in the way that Qt writes it unless told otherwise.
QByteArray qtPng(const QImage &image);

} // namespace quilmora::bench
