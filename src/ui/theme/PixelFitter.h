#pragma once

#include <map>

namespace quilmora {

/// Scales one axis of a drawing to pixels so that chosen places get whole positions, with linear
/// interpolation between them. Symmetric about the middle.
class PixelFitter final
{
public:
    /// `middle` of the drawing is mapped to `target`, in pixels.
    PixelFitter(double middle, double target, double scale);

    /// Lets a stroke along `place` that is `width` pixels wide, or the edge of an area for 0, start on a
    /// whole pixel. Does nothing next to a place that is aligned already.
    void align(double place, double width);

    double pixelAt(double place) const;
    double pixelsIn(double length) const { return length * m_scale; }

private:
    double m_middle;
    double m_target;
    double m_scale;
    std::map<double, double> m_aligned; ///< The pixels by their places.
};

} // namespace quilmora
