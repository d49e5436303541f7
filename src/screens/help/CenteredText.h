#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

class QColor;
class QPainter;
class QRectF;

namespace quilmora {

/// A plain text on centered lines, broken between words, and inside words that are longer than a line.
class CenteredText final
{
public:
    CenteredText() = default;
    CenteredText(QString text, const QFont &font);

    const QString &text() const { return m_text; }
    const QFont &font() const { return m_font; }

    /// Of the lines at that maximum width, in device-independent pixels. The height is a whole number.
    QSizeF size(double width) const;

    /// From the top of `bounds`.
    void draw(QPainter &painter, const QRectF &bounds, const QColor &color) const;

private:
    QString m_text;
    QFont m_font;
};

} // namespace quilmora
