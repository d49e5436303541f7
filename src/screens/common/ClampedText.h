#pragma once

#include <QFont>
#include <QString>

class QColor;
class QPainter;
class QRectF;

namespace quilmora
{

/// A text of which only the first lines are shown. What does not fit is cut off with an ellipsis at the end
/// of the last line. Line breaks in the text are kept, words without a place to break are broken anywhere,
/// and markup is not interpreted.
class ClampedText final
{
public:
    ClampedText(const QString &text, const QFont &font, int maximumLines,
                Qt::Alignment alignment = Qt::AlignLeft);

    /// The height that the text takes at that width, both in device-independent pixels.
    int height(int width) const;

    /// The height of as many lines as there may be.
    static int heightOfLines(const QFont &font, int lines);

    /// Draws the text from the top of `bounds`, aligned in its width. Gives the height that it takes.
    int draw(QPainter &painter, const QRectF &bounds, const QColor &color) const;

    /// The lines that are shown at that width.
    QStringList lines(int width) const;

private:
    QString text;
    QFont font;
    int maximumLines;
    Qt::Alignment alignment;
};

} // namespace quilmora
