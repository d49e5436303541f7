#pragma once

#include <QList>
#include <QSizeF>
#include <QString>

namespace quilmora::localservice {

/// A title broken into balanced lines that are as large as their room allows.
struct TitleLayout {
    struct Line {
        QString text;
        double width = 0;     ///< In font sizes.
        double pixelSize = 0; ///< Of the font.
        bool accented = false;
    };

    static constexpr double lineHeight = 1.12; ///< From one base line to the next, in font sizes.
    static constexpr qsizetype mostSigns = 44; ///< More end in an ellipsis.

    /// Lays `title` out into `room` (pixels), in `mostLines` lines at most. Lines end between words; " / "
    /// and line breaks of the title end one too. A title with nothing to show gives no lines.
    static TitleLayout of(const QString &title, QSizeF room, int mostLines);

    /// The height of all lines together.
    double height() const;

    QList<Line> lines;
};

} // namespace quilmora::localservice
