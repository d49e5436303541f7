#pragma once

#include <map>

namespace quilmora
{

/// How one axis of a drawing is scaled to pixels so that chosen places come to lie on them. What lies between
/// two of these places is scaled evenly. Both sides of the middle are treated alike.
class PixelFit final
{
public:
    /// `middle` of the drawing comes to lie at `target`, in pixels.
    PixelFit(double middle, double target, double scale);

    /// Lets a stroke along `place` that is `width` pixels wide, or the edge of an area for 0, start on a
    /// whole pixel. Does nothing next to a place that is aligned already.
    void align(double place, double width);

    double pixelAt(double place) const;
    double pixelsIn(double length) const { return length * scale; }

private:
    double middle;
    double target;
    double scale;
    std::map<double, double> aligned; ///< The pixels by their places.
};

} // namespace quilmora
