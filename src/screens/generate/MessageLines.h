#pragma once

#include <QString>

#include <vector>

namespace quilmora {

/// Splits a long text into paragraphs that QPlainTextEdit lays out quickly: very long lines get additional
/// breaks, and many short lines share a paragraph. Maps positions in the shown text to the original.
class MessageLines final
{
public:
    explicit MessageLines(QString text);

    /// The original with additional breaks, and with one character for every break.
    const QString &shown() const { return m_display; }

    /// The original text between two positions of shown().
    QString originalBetween(qsizetype from, qsizetype to) const;

private:
    void appendLine(qsizetype from, qsizetype to);
    /// The end of shown() so far corresponds to `place` in the original.
    void mark(qsizetype place);
    qsizetype originalPlace(qsizetype displayPlace) const;

    struct Mark {
        qsizetype displayPlace;
        qsizetype originalPlace;
    };

    QString m_original;
    QString m_display;
    std::vector<Mark> m_marks; ///< Sorted. Between two of them the distances are equal.
};

} // namespace quilmora
