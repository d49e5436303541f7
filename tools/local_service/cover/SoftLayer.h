#pragma once

#include <QImage>
#include <QPainter>
#include <QSize>

namespace quilmora
{

/// A transparent layer for everything that is out of focus: painted small, blurred and enlarged, which costs
/// little at any cover size. Belongs to one thread.
class SoftLayer final
{
public:
    /// A layer for a cover of `coverSize`, held at the fraction `scale` of it.
    SoftLayer(QSize coverSize, double scale);

    /// Paints in the cover's coordinates.
    QPainter &painter() { return m_painter; }

    /// Ends the painting, blurs by `radius` cover pixels and puts the result on the whole cover.
    void putOnto(QPainter &cover, double radius,
                 QPainter::CompositionMode mode = QPainter::CompositionMode_SourceOver);

private:
    QSize m_coverSize;
    double m_scale;
    QImage m_image;
    QPainter m_painter;
};

} // namespace quilmora
