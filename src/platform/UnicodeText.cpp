#include "platform/UnicodeText.h"

#include <algorithm>

namespace quilmora::unicodeText {
namespace {

bool isReserved(QChar character)
{
    constexpr char16_t first = 0xfdd0;
    constexpr char16_t last = 0xfdef;
    return character.isNull() || (character >= QChar{first} && character <= QChar{last});
}

} // namespace

bool isValid(QStringView text)
{
    return text.isValidUtf16() && std::none_of(text.begin(), text.end(), isReserved);
}

QString sanitize(const QString &text)
{
    if (isValid(text)) {
        return text;
    }
    QString readable = QString::fromUtf8(text.toUtf8());
    std::replace_if(readable.begin(), readable.end(), isReserved, QChar{QChar::ReplacementCharacter});
    return readable;
}

} // namespace quilmora::unicodeText
