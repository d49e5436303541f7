#pragma once

#include <QFont>
#include <QSize>
#include <QString>

#include <limits>

class QColor;
class QPainter;
class QRectF;

namespace quilmora {

/// The first lines of a plain text; the last line is elided when more would follow. Long words are broken
/// anywhere.
class ElidedText final
{
public:
    static constexpr int unlimited = std::numeric_limits<int>::max();

    ElidedText(const QString &text, const QFont &font, int maximumLines,
               Qt::Alignment alignment = Qt::AlignLeft);

    /// Of the lines at that maximum width, in device-independent pixels.
    QSize size(int width) const;
    int height(int width) const { return heightOfLines(m_font, static_cast<int>(lines(width).size())); }

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
