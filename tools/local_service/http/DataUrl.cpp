#include "local_service/http/DataUrl.h"

#include "platform/ImageCodec.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QLatin1StringView>

using namespace Qt::StringLiterals;

namespace quilmora::dataUrl
{
namespace
{

struct Kind {
    QLatin1StringView prefix;
    QByteArrayView firstBytes;
};

constexpr Kind kinds[] = {
    {"data:image/png;base64,"_L1, "\x89PNG\r\n\x1A\n"},
    {"data:image/jpeg;base64,"_L1, "\xFF\xD8\xFF"},
};

} // namespace

QImage decodePicture(const QString &text)
{
    for (const Kind &kind : kinds) {
        if (!text.startsWith(kind.prefix)) {
            continue;
        }
        const QByteArray base64 = QStringView{text}.sliced(kind.prefix.size()).toLatin1();
        const auto decoded = QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
        if (base64.size() % 4 != 0 || !decoded || !(*decoded).startsWith(kind.firstBytes)) {
            return {};
        }
        return imageCodec::decode(*decoded);
    }
    return {};
}

} // namespace quilmora::dataUrl
