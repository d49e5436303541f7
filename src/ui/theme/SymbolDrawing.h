#pragma once

#include <QList>
#include <QPainterPath>

#include <map>

class QByteArray;
class QColor;
class QPainter;

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

/// The strokes and filled shapes of a symbol on its grid of 24 units. Painting fits them to the pixels:
/// straight strokes get a whole width, and they and the extreme points of curves whole positions.
class SymbolDrawing final
{
public:
    explicit SymbolDrawing(const QByteArray &svg);

    /// Paints the symbol on a square of `side` pixels, with strokes of `strokeWidth` units; where `isMoved`,
    /// half a pixel further to the right and down.
    void paint(QPainter &painter, int side, double strokeWidth, const QColor &color, bool isMoved) const;

private:
    struct Shape {
        QPainterPath path;
        double strokeShare; ///< Of the usual width; 0 where the path is filled.

        bool isStroke() const { return strokeShare > 0; }
        bool isSmall() const; ///< One of several alike, or a dot.
    };
    /// The coordinate of an edge or an extreme point on one axis.
    struct Mark {
        double place;
        bool isStroke;
        bool isStraight;
    };

    void markAlong(const Shape &shape);
    void mark(QPointF from, QPointF tangent, const Shape &shape, bool isStraight);
    QPainterPath fitted(const Shape &shape, const PixelFitter &across, const PixelFitter &down) const;
    QPainterPath fittedSmall(const QPainterPath &path, const PixelFitter &across,
                             const PixelFitter &down) const;
    static void align(PixelFitter &fit, const QList<Mark> &marks, double strokeWidth);

    QList<Shape> m_shapes;
    QList<Mark> m_columns;
    QList<Mark> m_rows;
    bool m_hasSmallInMiddle = false;
};

} // namespace quilmora
