#include "generation/ResponseParser.h"

#include <QImage>
#include <QUrl>

#include <cstdlib>

using namespace quilmora;

namespace {

/// Of a picture that is named by its address the "resource" is the whole response, so that it is decoded,
/// too.
GenerationResult parse(const QByteArray &body)
{
    return parseResponse(body, [&body](const QUrl &) { return std::optional{body}; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray body{reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
    const GenerationResult result = parse(body);
    const auto *image = std::get_if<QImage>(&result);
    if (image != nullptr && image->isNull()) {
        std::abort();
    }
    const QString text = localizedDescription(result);
    if (image != nullptr && !text.isEmpty()) {
        std::abort();
    }
    return 0;
}
