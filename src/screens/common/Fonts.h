#pragma once

#include <QFont>

namespace quilmora
{

/// Makes the application's font one with good Chinese glyphs: the system's own, with a simplified Chinese
/// family behind it. To be called once, before the first window.
void installApplicationFont();

/// The system font at a size in device-independent pixels.
QFont systemFont(int pixelSize, QFont::Weight weight = QFont::Normal);

/// Where the baseline lies, from above, when the middle of Chinese characters is that of a row: the middle of
/// their line is up to two pixels higher.
double baselineInRow(const QFont &font, double rowHeight);

} // namespace quilmora
