#pragma once

#include "local_service/cover/ColourPalette.h"
#include "local_service/cover/CoverLayout.h"
#include "local_service/cover/TitleLayout.h"

#include <QPainterPath>

class QPainter;

namespace quilmora
{

/// Letters the title: outlined, raised from the ground, one line of it in the accent colour.
class TitlePainter final
{
public:
    TitlePainter(const TitleLayout &title, const CoverLayout &layout, const ColourPalette &palette);

    /// Darkens the ground behind the words where they would not stand out.
    void paintGround(QPainter &cover, QSize size) const;
    void paintWords(QPainter &cover, QSize size) const;

private:
    struct Lettering {
        QPainterPath path; ///< In cover pixels.
        double pixelSize;
        bool accented;
    };

    void paintShadow(QPainter &cover, QSize size) const;
    void paintBody(QPainter &cover, const Lettering &line) const;
    void paintFace(QPainter &cover, const Lettering &line) const;
    void paintBar(QPainter &cover) const;

    CoverLayout m_layout;
    ColourPalette m_palette;
    QList<Lettering> m_lines;
    QRectF m_bounds;
};

} // namespace quilmora
