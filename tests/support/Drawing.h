#pragma once

#include "ui/theme/Theme.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QWidget;

namespace quilmora::test {

/// A text as it is drawn: a line of it, or the part of a line that is in one font and colour.
struct DrawnText {
    QString text;
    QFont font;
    QColor color;
    QRectF box; ///< As wide as the text and as high as a line of the font, in the widget's coordinates.
};

/// A picture as it is drawn.
struct DrawnPixmap {
    QPixmap pixmap;
    QRectF place; ///< In the widget's coordinates.

    /// What of it CornerShape takes.
    QImage leftHalf() const;
};

/// What a widget and all that lies on it draw, seen from the outside: also what a component draws itself and
/// no screen reader gets.
class Drawing final
{
public:
    /// Lets `widget` draw itself. Texts and pictures come in the order of drawing.
    explicit Drawing(QWidget *widget);

    const QList<DrawnText> &texts() const { return m_allTexts; }
    QStringList strings() const;
    const QList<DrawnPixmap> &pixmaps() const { return m_allPixmaps; }

    /// Size in pixels, weight and colour of the first text that reads so, as look() says it; "not drawn" when
    /// there is none.
    QString lookOf(const QString &text) const;
    /// Where that text lies; null when there is none.
    QRectF placeOf(const QString &text) const;

    /// Where the symbol of that name, drawn to stand beside a text of that size and weight, lies; null when
    /// it is not drawn in that colour.
    QRectF symbol(const QString &name, int pixelSize, QFont::Weight weight, const QColor &color) const;
    QRectF symbol(const QString &name, int pixelSize, QFont::Weight weight, ColorRole role) const;

    /// For comparing: "13 px, weight 500, #D9000000".
    static QString look(int pixelSize, QFont::Weight weight, const QColor &color);
    static QString look(int pixelSize, QFont::Weight weight, ColorRole role);

private:
    QList<DrawnText> m_allTexts;
    QList<DrawnPixmap> m_allPixmaps;
};

} // namespace quilmora::test
