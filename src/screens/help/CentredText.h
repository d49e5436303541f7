#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

class QColor;
class QPainter;
class QRectF;

namespace quilmora
{

/// A plain text on as many centred lines as the width asks for. It is broken between words, and inside one
/// that is longer than a line, as addresses are.
class CentredText final
{
public:
    /// An empty one.
    CentredText() = default;
    CentredText(QString text, const QFont &font);

    const QString &text() const { return content; }
    const QFont &font() const { return face; }

    /// What the lines take when none is wider than `width`, in device-independent pixels; the height is
    /// whole.
    QSizeF size(double width) const;

    /// Draws the lines from the top of `bounds`, none wider than it.
    void draw(QPainter &painter, const QRectF &bounds, const QColor &color) const;

private:
    QString content;
    QFont face;
};

} // namespace quilmora
