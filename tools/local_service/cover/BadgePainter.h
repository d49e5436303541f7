#pragma once

#include "local_service/cover/ColourPalette.h"
#include "local_service/cover/CoverLayout.h"

#include <QString>

class QPainter;

namespace quilmora::badgePainter
{

/// A slanted sticker with `word` in the accent colours at the layout's badge place. Words beyond eight signs
/// are cut; nothing is painted for an empty one.
void paintExpression(QPainter &cover, QSize size, const CoverLayout &layout, const ColourPalette &palette,
                     const QString &word);

/// The small note in the lower right corner that says the picture was made by a machine.
void paintWatermark(QPainter &cover, QSize size, const CoverLayout &layout);

} // namespace quilmora::badgePainter
