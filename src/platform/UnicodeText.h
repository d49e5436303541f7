#pragma once

#include <QString>

/// Texts that every file and every other program can take.
namespace quilmora::unicodeText {

/// Whether `text` has neither NUL, at which many a reader stops, nor halves of surrogate pairs, which cannot
/// be written as UTF-8, nor a character from U+FDD0 to U+FDEF, which are no characters for exchange. Any
/// thread.
bool isValid(QStringView text);

/// `text` with U+FFFD, the sign for a character that could not be read, in place of each of them. Any thread.
QString sanitize(const QString &text);

} // namespace quilmora::unicodeText
