#pragma once

#include "local_service/cover/ColourPalette.h"
#include "local_service/cover/CoverLayout.h"

#include <QImage>

class QPainter;

namespace quilmora
{

/// Sets the presenter's picture into its circle: light behind, a glowing ring around, a shadow below.
class PresenterPainter final
{
public:
    PresenterPainter(QImage picture, const CoverLayout &layout, const ColourPalette &palette);

    void paint(QPainter &cover, QSize size) const;

private:
    void paintSurroundings(QPainter &cover, QSize size) const;
    void paintPicture(QPainter &cover) const;
    void paintRing(QPainter &cover) const;

    QImage m_picture;
    CoverLayout m_layout;
    ColourPalette m_palette;
};

} // namespace quilmora
