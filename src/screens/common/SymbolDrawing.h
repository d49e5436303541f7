#pragma once

#include <QList>
#include <QPainterPath>

class QByteArray;
class QColor;
class QPainter;

namespace quilmora
{

class PixelFit;

/// The strokes and filled shapes of a symbol on its grid of 24 units. Painted small they are fitted to the
/// pixels: straight strokes get whole widths, and these and the outermost points of curves whole places.
class SymbolDrawing final
{
public:
    explicit SymbolDrawing(const QByteArray &svg);

    /// Paints the symbol on a square of `side` pixels, with strokes of `strokeWidth` units. Where `isMoved`
    /// its middle lies half a pixel further to the right and down.
    void paint(QPainter &painter, int side, double strokeWidth, const QColor &color, bool isMoved) const;

private:
    struct Shape {
        QPainterPath path;
        double strokeShare; ///< Of the usual width; 0 where the path is filled.

        bool isStroke() const { return strokeShare > 0; }
        bool isSmall() const; ///< One of several alike, or a dot.
    };
    /// A place on one of the axes where the drawing has an edge or an outermost point.
    struct Mark {
        double place;
        bool isStroke;
        bool isStraight;
    };

    void markAlong(const Shape &shape);
    void mark(QPointF from, QPointF tangent, const Shape &shape, bool isStraight);
    QPainterPath fitted(const Shape &shape, const PixelFit &across, const PixelFit &down) const;
    QPainterPath fittedSmall(const QPainterPath &path, const PixelFit &across, const PixelFit &down) const;
    static void align(PixelFit &fit, const QList<Mark> &marks, double strokeWidth);

    QList<Shape> shapes;
    QList<Mark> columns;
    QList<Mark> rows;
    bool hasSmallInMiddle = false;
};

} // namespace quilmora
