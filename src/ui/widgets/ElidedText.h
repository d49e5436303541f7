#pragma once

#include <QFont>
#include <QString>

class QColor;
class QPainter;
class QRectF;

namespace quilmora {

/// The first lines of a plain text; the last line is elided when more would follow. Long words are broken
/// anywhere.
class ElidedText final
{
public:
    ElidedText(const QString &text, const QFont &font, int maximumLines,
               Qt::Alignment alignment = Qt::AlignLeft);

    /// In device-independent pixels.
    int height(int width) const;

    static int heightOfLines(const QFont &font, int lines);

    /// Draws from the top of `bounds`; gives the height of the text.
    int draw(QPainter &painter, const QRectF &bounds, const QColor &color) const;

    QStringList lines(int width) const;

private:
    QString m_text;
    QFont m_font;
    int m_maximumLines;
    Qt::Alignment m_alignment;
};

} // namespace quilmora
