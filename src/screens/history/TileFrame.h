#pragma once

#include <QColor>
#include <QPixmap>
#include <QSizeF>

namespace quilmora {

/// The background and the outline of the squares of tiles. Drawn once for all tiles, since this takes most of
/// the time of a painting.
class TileFrame final
{
public:
    /// `cornerRadius` in device-independent pixels.
    explicit TileFrame(double cornerRadius) : m_radius{cornerRadius} {}

    /// Draws both again if a size, in device-independent pixels, or a color has changed.
    void prepare(QSizeF size, double lineWidth, double devicePixelRatio);

    const QPixmap &background() const { return m_background; }
    const QPixmap &outline() const { return m_outline; }

private:
    struct Look {
        QSize pixels;
        double lineWidth = 0;
        double devicePixelRatio = 0;
        QColor backgroundColor;
        QColor lineColor;

        bool operator==(const Look &) const = default;
    };

    const double m_radius;
    Look m_look;
    QPixmap m_background;
    QPixmap m_outline;
};

} // namespace quilmora
