#include "platform/NumberFormat.h"

#include <array>
#include <charconv>
#include <string_view>

namespace quilmora {

QString shortestDecimal(double value)
{
    // The longest case, the smallest subnormal, takes "-0." and 323 zeros before its digits.
    std::array<char, 400> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    const std::string_view digits{buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data())};
    const QString text = QString::fromLatin1(digits.data(), static_cast<qsizetype>(digits.size()));
    return digits.find('.') == std::string_view::npos ? text + QLatin1String{".0"} : text;
}

} // namespace quilmora
