#pragma once

#include <QFont>

namespace quilmora {

/// Sets the font of the application: that of the system, with a simplified Chinese family as fallback. To be
/// called once, before the first window.
void installApplicationFont();

/// The system font at a size in device-independent pixels.
QFont systemFont(int pixelSize, QFont::Weight weight = QFont::Normal);

/// The baseline, from the top, that centers Chinese characters in a row. Centered lines are up to two pixels
/// too high.
double baselineInRow(const QFont &font, double rowHeight);

} // namespace quilmora
