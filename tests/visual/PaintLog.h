#pragma once

#include <QList>
#include <QRectF>
#include <QString>
#include <QTransform>

class QWidget;

namespace quilmora::test {

/// What one widget, without those on it, draws into its window, in pixels of the screen.
struct PaintLog {
    struct Picture {
        QRectF place;
        QSizeF source; ///< What is drawn there, in pixels of its own.
    };
    struct Text {
        QString text;
        QRectF ink; ///< Bounds of what is seen of it, in the widget's own coordinates.
        QTransform toScreen;
    };
    /// A straight edge along the screen's rows or columns, drawn with softened edges.
    struct Edge {
        double outer; ///< Its place across its direction: of a line, the side away from the shape's middle.
        double inner; ///< The other side of a line; the same for the edge of a filled shape.
        QRectF shape; ///< Bounds of the whole shape.
        bool isUpright;
    };

    QRectF bounds; ///< Of the widget; it cannot draw beyond.
    QList<Picture> pictures;
    QList<Text> texts;
    QList<Edge> edges;
    int texturedShapes = 0; ///< Shapes filled with a picture.

    /// Lets the widget, which must be visible, draw itself at its place and at its window's resolution.
    static PaintLog of(QWidget *widget);
};

} // namespace quilmora::test
