#pragma once

#include <QByteArray>

namespace quilmora::test::contentCoding {

/// `body` compressed with a content coding of HTTP: "gzip", "br" or "zstd". The test program ends for any
/// other.
QByteArray encode(const QByteArray &body, const QByteArray &coding);

} // namespace quilmora::test::contentCoding
