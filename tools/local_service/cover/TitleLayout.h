#pragma once

#include <QList>
#include <QSizeF>
#include <QString>

namespace quilmora
{

/// A title broken into balanced lines that are as large as their room allows.
class TitleLayout final
{
public:
    struct Line {
        QString text;
        double pixelSize = 0; ///< Of the font.
        double width = 0;     ///< In pixels, at that size.
        bool accented = false;
    };

    static constexpr double lineHeight = 1.12; ///< From one base line to the next, in font sizes.
    static constexpr qsizetype mostWords = 44; ///< More end in an ellipsis.

    /// Lays `title` out into `room` (pixels), in `mostLines` lines at most. A title with nothing to show
    /// gives no lines. May be called from any thread.
    TitleLayout(const QString &title, QSizeF room, int mostLines);

    const QList<Line> &lines() const { return m_lines; }
    /// The height of all lines together.
    double height() const;

private:
    void fit(QSizeF room);
    void emphasise(QSizeF room);

    QList<Line> m_lines;
};

} // namespace quilmora
