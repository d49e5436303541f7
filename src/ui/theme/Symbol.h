#pragma once

#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QString>

class QPainter;
class QRectF;

namespace quilmora {

/// A symbol of the application by the name of its file in resources/symbols.
class Symbol final
{
public:
    /// `pixelSize` and `weight` are those of a text that the symbol goes with. An unknown name asserts.
    Symbol(QString name, int pixelSize, QFont::Weight weight = QFont::Normal);

    /// Side of the square that the symbol takes, in device-independent pixels.
    int extent() const;

    /// Draws the symbol into the middle of `bounds`, sharp at the painter's resolution.
    void draw(QPainter &painter, const QRectF &bounds, const QColor &color) const;

    /// The symbol in a square of `side` device-independent pixels; where `isMoved`, half a physical pixel
    /// further to the right and down.
    static QPixmap pixmap(const QString &name, int side, const QColor &color, double devicePixelRatio,
                          QFont::Weight weight = QFont::Normal, bool isMoved = false);

private:
    QString m_name;
    int m_pixelSize;
    QFont::Weight m_weight;
};

} // namespace quilmora
