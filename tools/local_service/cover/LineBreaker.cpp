#include "local_service/cover/LineBreaker.h"

#include "local_service/cover/TitleFont.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quilmora
{
namespace
{

constexpr double spaceWidth = 0.28;

struct Step {
    double cost = std::numeric_limits<double>::infinity();
    qsizetype from = 0;
};

} // namespace

LineBreaker::LineBreaker(QList<TitleWord> words) : m_words{std::move(words)}
{
    double position = 0;
    for (const TitleWord &word : std::as_const(m_words)) {
        m_starts.push_back(position);
        position += titleFont::widthPerPixel(word.text);
        m_ends.push_back(position);
        position += word.spaceAfter ? spaceWidth : 0;
    }
}

double LineBreaker::width(qsizetype first, qsizetype end) const
{
    return m_ends[static_cast<std::size_t>(end - 1)] - m_starts[static_cast<std::size_t>(first)];
}

QString LineBreaker::text(qsizetype first, qsizetype end) const
{
    QString result;
    for (qsizetype i = first; i < end; ++i) {
        result += m_words[i].text;
        if (m_words[i].spaceAfter && i + 1 < end) {
            result += u' ';
        }
    }
    return result;
}

LineBreaker::Lines LineBreaker::into(int count) const
{
    const qsizetype size = m_words.size();
    const double target = width(0, size) / count;
    // table[l][e]: the cheapest way to set the first e words in l lines.
    std::vector<std::vector<Step>> table(static_cast<std::size_t>(count + 1),
                                         std::vector<Step>(static_cast<std::size_t>(size + 1)));
    table[0][0].cost = 0;
    for (std::size_t line = 1; line <= static_cast<std::size_t>(count); ++line) {
        for (qsizetype end = 1; end <= size; ++end) {
            for (qsizetype first = 0; first < end; ++first) {
                const double off = (width(first, end) - target) / target;
                const double breakCost = end < size ? m_words[end - 1].breakCost : 0;
                const double cost =
                    table[line - 1][static_cast<std::size_t>(first)].cost + off * off + breakCost;
                Step &step = table[line][static_cast<std::size_t>(end)];
                if (cost < step.cost) {
                    step = {cost, first};
                }
            }
        }
    }
    Lines result;
    for (auto [line, end] = std::pair{static_cast<std::size_t>(count), size}; line > 0; --line) {
        const qsizetype first = table[line][static_cast<std::size_t>(end)].from;
        result.texts.prepend(text(first, end));
        const double own = width(first, end);
        result.widest = std::max(result.widest, own);
        result.narrowest = end == size ? own : std::min(result.narrowest, own);
        result.ugliness += end < size ? m_words[end - 1].breakCost : 0;
        end = first;
    }
    return result;
}

} // namespace quilmora
