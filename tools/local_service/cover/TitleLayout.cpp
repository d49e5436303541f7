#include "local_service/cover/TitleLayout.h"

#include "local_service/cover/LineBreaker.h"
#include "local_service/cover/TitleFont.h"
#include "local_service/cover/TitleWords.h"

#include <algorithm>
#include <iterator>

namespace quilmora
{
namespace
{

/// A short title must not grow beyond this share of its room's height.
constexpr double largestShare = 0.40;
/// How much larger than the others the accented line may be.
constexpr double largestEmphasis = 1.30;
/// Lines beyond the first must be worth it: two large lines read better than three slightly larger ones.
constexpr double priceOfALine = 0.95;
/// How much of its worth a layout keeps whose shortest line is nothing beside the widest.
constexpr double worthOfRagged = 0.8;
/// What it is worth to break only where the title asks for it.
constexpr double worthOfTheWish = 1.3;

double fittingSize(const LineBreaker::Lines &broken, QSizeF room)
{
    const double byWidth = room.width() / broken.widest;
    const double byHeight = room.height() / (double(broken.texts.size()) * TitleLayout::lineHeight);
    return std::min({byWidth, byHeight, room.height() * largestShare});
}

} // namespace

TitleLayout::TitleLayout(const QString &title, QSizeF room, int mostLines)
{
    const QList<TitleWord> words = TitleWord::split(title, mostWords);
    if (words.isEmpty() || room.isEmpty()) {
        return;
    }
    const LineBreaker breaker{words};
    const auto wishes = std::count_if(words.begin(), std::prev(words.end()),
                                      [](const TitleWord &word) { return word.breakWished; });
    const auto wishedLines = wishes > 0 ? wishes + 1 : 0;
    LineBreaker::Lines best;
    double bestSize = 0;
    double bestWorth = 0;
    double price = 1;
    for (int count = 1; count <= std::min<qsizetype>(mostLines, words.size()); ++count) {
        const LineBreaker::Lines broken = breaker.into(count);
        const double size = fittingSize(broken, room);
        const double worth = size * price * (1 - 0.18 * std::clamp(broken.ugliness, -1.0, 2.0)) *
                             (worthOfRagged + (1 - worthOfRagged) * broken.narrowest / broken.widest) *
                             (count == wishedLines ? worthOfTheWish : 1);
        if (worth > bestWorth) {
            best = broken;
            bestSize = size;
            bestWorth = worth;
        }
        price *= priceOfALine;
    }
    for (const QString &text : std::as_const(best.texts)) {
        m_lines.append({text, bestSize, titleFont::widthPerPixel(text) * bestSize, false});
    }
    emphasise(room);
    fit(room);
}

/// One line of several carries the weight: the one with a number in it, else the last.
void TitleLayout::emphasise(QSizeF room)
{
    if (m_lines.size() < 2) {
        return;
    }
    const auto hasNumber = [](const Line &line) {
        return std::any_of(line.text.begin(), line.text.end(), [](QChar sign) { return sign.isDigit(); });
    };
    auto chosen = std::find_if(m_lines.begin(), m_lines.end(), hasNumber);
    if (chosen == m_lines.end()) {
        --chosen;
    }
    chosen->accented = true;
    const double growth = std::clamp(room.width() / chosen->width, 1.0, largestEmphasis);
    chosen->pixelSize *= growth;
    chosen->width *= growth;
}

void TitleLayout::fit(QSizeF room)
{
    const double tooHigh = std::max(1.0, height() / room.height());
    for (Line &line : m_lines) {
        line.pixelSize /= tooHigh;
        line.width /= tooHigh;
    }
}

double TitleLayout::height() const
{
    double sum = 0;
    for (const Line &line : m_lines) {
        sum += line.pixelSize * lineHeight;
    }
    return sum;
}

} // namespace quilmora
