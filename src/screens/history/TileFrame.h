#pragma once

#include <QColor>
#include <QPixmap>
#include <QSizeF>

namespace quilmora
{

/// The square of a tile without its picture: the ground below it and the line around it. Drawn once for all
/// tiles, which are alike: drawn for each they would take most of the time of a screenful.
class TileFrame final
{
public:
    /// `cornerRadius` in device-independent pixels.
    explicit TileFrame(double cornerRadius) : radius{cornerRadius} {}

    /// Draws the two for squares of that size, `lineWidth` and resolution in the present colours, unless they
    /// are so already. Sizes in device-independent pixels.
    void prepare(QSizeF size, double lineWidth, double devicePixelRatio);

    const QPixmap &ground() const { return groundPixmap; }
    const QPixmap &outline() const { return outlinePixmap; }

private:
    struct Look {
        QSize pixels;
        double lineWidth = 0;
        double devicePixelRatio = 0;
        QColor groundColor;
        QColor lineColor;

        bool operator==(const Look &) const = default;
    };

    const double radius;
    Look look;
    QPixmap groundPixmap;
    QPixmap outlinePixmap;
};

} // namespace quilmora
