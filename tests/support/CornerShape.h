#pragma once

#include <QImage>
#include <QRect>

class QWidget;

namespace quilmora::test {

/// The top left corner of a filled shape, measured on a picture of it. Lengths are in device-independent
/// pixels.
class CornerShape final
{
public:
    /// Of what `widget` draws into `piece`, a part of it; into all of it when `piece` is empty. Nothing may
    /// be drawn behind the piece.
    explicit CornerShape(QWidget *widget, const QRect &piece = {});
    /// Of the left half of a picture on transparent ground that fills its whole sheet.
    explicit CornerShape(const QImage &leftHalf, double devicePixelRatio = 1.0);

    /// Empty when the corner is a quarter of a circle; otherwise where it differs.
    QString differenceFromCircle(double radius) const;

    /// Empty when the corner is about as round as that circle but flows into the upper edge without a jump:
    /// it leaves the edge earlier than a circle would. Otherwise where it differs.
    QString differenceFromContinuous(double radius) const;

    /// How far below its upper edge the shape begins, on the average between these distances from its left
    /// edge.
    double below(double from, double to) const;

private:
    QImage m_coverage; ///< 8-bit alpha, from 0 outside to 255 inside.
    double m_ratio;
};

} // namespace quilmora::test
