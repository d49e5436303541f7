#pragma once

#include "local_service/cover/CoverLayout.h"
#include "local_service/cover/Palette.h"
#include "local_service/cover/TitleLayout.h"

class QPainter;

namespace quilmora::localservice::titlePainter {

/// Letters the title: outlined, raised from a darkened ground, one line of it in yellow.
void paint(QPainter &cover, QSize size, const TitleLayout &title, const CoverLayout &layout,
           const Palette &palette);

} // namespace quilmora::localservice::titlePainter
