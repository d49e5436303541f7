#pragma once

#include <QString>

/// Text that can be stored and passed to other programs.
namespace quilmora::unicodeText {

/// Whether `text` has neither NUL, at which C strings end, nor unpaired surrogates, which have no UTF-8, nor
/// a noncharacter from U+FDD0 to U+FDEF. Any thread.
bool isValid(QStringView text);

/// `text` with U+FFFD in place of each of them. Any thread.
QString sanitize(const QString &text);

} // namespace quilmora::unicodeText
