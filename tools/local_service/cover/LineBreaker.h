#pragma once

#include "local_service/cover/TitleWords.h"

#include <QList>
#include <QStringList>

#include <vector>

namespace quilmora
{

/// Finds the best places to break a title into a given number of lines.
class LineBreaker final
{
public:
    struct Lines {
        QStringList texts;
        double widest = 0;    ///< In font sizes.
        double narrowest = 0; ///< In font sizes.
        double ugliness = 0;  ///< Summed costs of the breaks taken; negative when they were welcome.
    };

    /// Measures `words` once.
    explicit LineBreaker(QList<TitleWord> words);

    /// The words in `count` lines (1 to the number of words) of nearly equal width.
    Lines into(int count) const;

private:
    double width(qsizetype first, qsizetype end) const;
    QString text(qsizetype first, qsizetype end) const;

    QList<TitleWord> m_words;
    std::vector<double> m_ends; ///< Where each word ends when all stand in one line, in font sizes.
    std::vector<double> m_starts;
};

} // namespace quilmora
