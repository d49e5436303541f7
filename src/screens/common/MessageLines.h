#pragma once

#include <QString>

#include <vector>

namespace quilmora
{

/// A text of any length, cut so that a text view can lay it out bit by bit: very long lines get further
/// breaks, and very many short ones share paragraphs. Knows for each place in what is shown the place in the
/// original.
class MessageLines final
{
public:
    explicit MessageLines(QString text);

    /// What to put into the view: the original with further breaks, and with one character for every break.
    const QString &shown() const { return display; }

    /// The characters of the original that stand between two places of shown().
    QString originalBetween(qsizetype from, qsizetype to) const;

private:
    void appendLine(qsizetype from, qsizetype to);
    /// Says that the end of shown() so far stands for `place` in the original.
    void mark(qsizetype place);
    qsizetype originalPlace(qsizetype displayPlace) const;

    struct Mark {
        qsizetype displayPlace;
        qsizetype originalPlace;
    };

    QString original;
    QString display;
    std::vector<Mark> marks; ///< In order; between two of them the places run in step.
};

} // namespace quilmora
