#include "local_service/cover/TitleWords.h"

#include "local_service/cover/CommonWords.h"

#include <QChar>
#include <QStringView>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Longer runs of letters are cut, or a title without blanks would become too small to read.
constexpr qsizetype longestWord = 16;
constexpr double wishedBreak = -1.2;
constexpr double afterPunctuation = -0.35;
constexpr double atSpace = -0.12;
constexpr double beforeParticle = 0.6;
constexpr double afterParticle = -0.04;
constexpr double insideWord = 0.5;
constexpr double afterNumber = 0.5;
constexpr QStringView particles = u"的了吗呢吧啊着过们地得里上下";
constexpr QStringView countWords = u"个天年月日分秒万亿千百元块种招步次倍大条件款岁";
constexpr QStringView opening = u"（《“‘【「『〈(<[{";
constexpr QStringView closing = u"，。！？；：、）》”’】」』〉…～—,.!?;:)>]}%％·";

bool isLatin(char32_t sign)
{
    return QChar::isLetterOrNumber(sign) && sign < 0x2E80;
}

bool isDigit(char32_t sign)
{
    return QChar::isDigit(sign);
}

bool hasOutline(char32_t sign)
{
    if (sign > 0xFFFF && QChar::script(sign) != QChar::Script_Han) {
        return false;
    }
    const QChar::Category category = QChar::category(sign);
    const bool symbol = category == QChar::Symbol_Other && sign >= 0x2190 && sign < 0x3000;
    return !symbol && category != QChar::Other_Control && category != QChar::Other_Format &&
           category != QChar::Other_NotAssigned && category != QChar::Other_Surrogate &&
           category != QChar::Other_PrivateUse && !(sign >= 0xFE00 && sign <= 0xFE0F);
}

bool contains(QStringView set, char32_t sign)
{
    return sign <= 0xFFFF && set.contains(QChar{sign});
}

class Splitter final
{
public:
    explicit Splitter(qsizetype most) : m_most{most} {}

    /// Takes the next sign; false when there is no more room.
    bool take(char32_t sign)
    {
        if (sign == U'\n' || sign == U'\r' || sign == 0x2028 || sign == 0x2029 || sign == U'｜' ||
            sign == U'|') {
            wishBreak();
        } else if (QChar::isSpace(sign)) {
            m_space = true;
        } else if (hasOutline(sign)) {
            return append(sign);
        }
        return true;
    }

    QList<TitleWord> words;

private:
    void wishBreak()
    {
        m_space = true;
        if (!words.isEmpty()) {
            words.last().breakWished = true;
            words.last().breakCost = wishedBreak;
        }
    }

    bool append(char32_t sign)
    {
        const bool joins =
            !words.isEmpty() && !m_space && words.last().text.size() < longestWord && joinsLast(sign);
        if (!joins) {
            // A slash between blanks separates.
            if (m_space && words.size() > 1 && words.last().text == u"/"_s) {
                words.removeLast();
                wishBreak();
            }
            if (words.size() == m_most) {
                words.last().text = u"…"_s;
                words.last().breakCost = 0;
                return false;
            }
            begin(sign);
        }
        words.last().text += QString::fromUcs4(&sign, 1);
        if (contains(closing, sign)) {
            words.last().breakCost = afterPunctuation;
        } else if (contains(particles, sign)) {
            words.last().breakCost = afterParticle;
        }
        m_last = sign;
        m_space = false;
        return true;
    }

    bool joinsLast(char32_t sign) const
    {
        return contains(closing, sign) || contains(opening, m_last) || (isLatin(m_last) && isLatin(sign)) ||
               (isLatin(m_last) && (sign == U'-' || sign == U'\'' || sign == U'+' || sign == U'/')) ||
               ((m_last == U'-' || m_last == U'\'' || m_last == U'/' || m_last == U'.') && isLatin(sign)) ||
               (isDigit(m_last) && contains(countWords, sign));
    }

    void begin(char32_t sign)
    {
        if (!words.isEmpty()) {
            TitleWord &last = words.last();
            last.spaceAfter = m_space;
            if (m_space && !last.breakWished) {
                last.breakCost = atSpace;
            }
            if (contains(particles, sign) && !m_space) {
                last.breakCost += beforeParticle;
            }
            if (!m_space && commonWords::contains(m_last, sign)) {
                last.breakCost += insideWord;
            }
            if (isDigit(m_last) && !m_space) {
                last.breakCost += afterNumber;
            }
        }
        words.append(TitleWord{});
    }

    const qsizetype m_most;
    char32_t m_last = 0;
    bool m_space = false;
};

} // namespace

QList<TitleWord> TitleWord::split(const QString &title, qsizetype most)
{
    Splitter splitter{most};
    // A sign takes two units at most, and some are left out: far more than can be shown, far less than a
    // book.
    const QList<uint> signs = QStringView{title}.left(most * 64).toUcs4();
    for (const uint sign : signs) {
        if (!splitter.take(sign)) {
            break;
        }
    }
    return splitter.words;
}

} // namespace quilmora
