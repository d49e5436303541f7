#pragma once

#include <QString>

namespace quilmora::console {

/// Writes `text` to standard output in UTF-8 as exactly one line and flushes it; line breaks inside the text
/// become blanks. A standard output that cannot be written is ignored.
void printLine(const QString &text);

} // namespace quilmora::console
