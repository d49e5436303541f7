#pragma once

#include <QString>

namespace quilmora {

/// The shortest decimal text, without an exponent, that reads back as `value`; it always has a decimal point
/// (1700000000 gives "1700000000.0"). `value` must be finite.
QString shortestDecimal(double value);

} // namespace quilmora
