#pragma once

#include <QList>
#include <QString>

namespace quilmora
{

/// A piece of a title that no line break may cut: a sign with its punctuation, or a Latin word.
struct TitleWord {
    QString text;
    bool spaceAfter = false;
    bool breakWished = false; ///< The title itself asks for a line break after it.
    double breakCost = 0;     ///< How ugly a line break after it would be; negative where one is welcome.

    /// The pieces of `title` in order, `most` at most, the last one an ellipsis if there was more. Signs
    /// without an outline (emoji, control characters) are left out. " / ", "｜" and line breaks become
    /// welcome breaks and are not shown.
    static QList<TitleWord> split(const QString &title, qsizetype most);
};

} // namespace quilmora
