#pragma once

#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QString>

class QPainter;
class QRectF;

namespace quilmora
{

/// A symbol of the application's own family, by the name of what it stands for ("gearshape").
class Symbol final
{
public:
    /// `pixelSize` is that of a text beside which the symbol stands in proportion; `weight` gives its
    /// strokes.
    Symbol(QString name, int pixelSize, QFont::Weight weight = QFont::Normal);

    /// Side of the square that the symbol takes, in device-independent pixels.
    int extent() const;

    /// Draws the symbol into the middle of `bounds`, sharp at the painter's resolution.
    void draw(QPainter &painter, const QRectF &bounds, const QColor &color) const;

    /// The symbol drawn as large as fits into a square of `side` device-independent pixels. Where `isMoved`
    /// its middle lies half a pixel of the screen to the right of that of the square and below it.
    static QPixmap pixmap(const QString &name, int side, const QColor &color, double devicePixelRatio,
                          QFont::Weight weight = QFont::Normal, bool isMoved = false);

private:
    QString name;
    int pixelSize;
    QFont::Weight weight;
};

} // namespace quilmora
