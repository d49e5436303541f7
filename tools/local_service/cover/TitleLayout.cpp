#include "local_service/cover/TitleLayout.h"

#include "local_service/cover/TitleFont.h"

#include <QRegularExpression>
#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::localservice {
namespace {

using Lines = QList<TitleLayout::Line>;

struct Piece {
    QString text;
    double width = 0; ///< In font sizes.
};

/// A short title must not grow beyond this share of its room's height.
constexpr double largestShare = 0.40;
/// How much larger than the others the accented line may be.
constexpr double largestEmphasis = 1.30;
/// Longer runs of letters are cut, or a title without blanks would become too small to read.
constexpr qsizetype longestPiece = 16;
constexpr QStringView particles = u"的了吗呢吧啊着过们地得里上下";
/// Words that are common in titles: nothing else tells where a Chinese word ends.
constexpr QStringView commonWords =
    u"如何 怎么 什么 这个 这些 终于 已经 可以 必须 不要 不是 知道 没有 如果 一个 "
    u"个人 一次 一天 一年 一起 一切 一定 一样 一招 第一 一桶 桶金 最后 现在 未来 "
    u"时间 小时 分钟 工作 办公 公司 老板 创业 赚钱 赚到 存下 月入 十万 百万 收入 "
    u"财富 自由 投资 普通 通人 我们 你们 自己 高手 生活 人生 世界 全国 城市 森林 "
    u"海边 星空 宇宙 黑洞 旅行 徒步 美食 食堂 开张 深夜 凌晨 四点 三天 三夜 视频 "
    u"封面 剪辑 直播 方法 技巧 秘密 学会 改变 看懂 问题 科技";

/// `title` with at most mostSigns signs, and a '\n' wherever it asks for a new line.
QString tidied(const QString &title, int mostLines)
{
    // Signs that are left out must not count, but nobody reads a book.
    const QString text = titleFont::drawable(title.left(TitleLayout::mostSigns * 64));
    QStringList parts;
    const QStringList raw = QString{text}.replace(u" / "_s, u"\n"_s).split(u'\n');
    for (const QString &part : raw) {
        parts.append(part.simplified());
    }
    parts.removeAll(QString{});
    const QString whole = parts.join(parts.size() > mostLines ? u' ' : u'\n');
    return whole.size() > TitleLayout::mostSigns ? whole.left(TitleLayout::mostSigns - 1) + u'…' : whole;
}

bool holdTogether(QChar before, QChar after)
{
    return before.isDigit() || particles.contains(after) ||
           commonWords.contains(QString{QString{before} + after});
}

/// The parts of `text` that stay in one line each.
QList<Piece> piecesOf(const QString &text)
{
    QList<Piece> pieces;
    const auto add = [&](const QString &piece) {
        pieces.append({piece, titleFont::widthPerPixel(piece)});
    };
    qsizetype begin = 0;
    QTextBoundaryFinder finder{QTextBoundaryFinder::Line, text};
    for (qsizetype end = finder.toNextBoundary(); end > 0; end = finder.toNextBoundary()) {
        for (; end - begin > longestPiece; begin += longestPiece) {
            add(text.sliced(begin, longestPiece));
        }
        if (end == text.size() || !holdTogether(text[end - 1], text[end])) {
            add(text.sliced(begin, end - begin));
            begin = end;
        }
    }
    return pieces;
}

/// The pieces in lines of at most `width` font sizes, where they can be that narrow.
Lines wrapped(const QList<Piece> &pieces, double width)
{
    Lines lines;
    Piece line;
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        line = {line.text + pieces[i].text, line.width + pieces[i].width};
        if (i + 1 == pieces.size() || line.text.endsWith(u'\n') || line.width + pieces[i + 1].width > width) {
            lines.append({line.text.trimmed(), titleFont::widthPerPixel(line.text.trimmed())});
            line = {};
        }
    }
    return lines;
}

double widest(const Lines &lines)
{
    const auto narrower = [](const TitleLayout::Line &a, const TitleLayout::Line &b) {
        return a.width < b.width;
    };
    return std::max_element(lines.begin(), lines.end(), narrower)->width;
}

/// One line of several carries the weight: the one with a number in it, else the last.
void accent(Lines &lines, QSizeF room)
{
    static const QRegularExpression digit{u"[0-9]"_s};
    auto chosen = std::find_if(lines.begin(), lines.end(),
                               [](const TitleLayout::Line &line) { return line.text.contains(digit); });
    if (chosen == lines.end()) {
        --chosen;
    }
    chosen->accented = true;
    chosen->pixelSize *= std::clamp(room.width() / (chosen->width * chosen->pixelSize), 1.0, largestEmphasis);
}

} // namespace

TitleLayout TitleLayout::of(const QString &title, QSizeF room, int mostLines)
{
    TitleLayout layout;
    Lines &lines = layout.lines;
    const QString text = tidied(title, mostLines);
    const QList<Piece> pieces = piecesOf(text);
    const qsizetype most = text.contains(u'\n') ? text.count(u'\n') + 1 : mostLines;
    if (pieces.isEmpty() || room.isEmpty()) {
        return layout;
    }
    double size = room.height() * largestShare;
    for (bool fits = false; !fits; size *= fits ? 1 : 0.96) {
        lines = wrapped(pieces, room.width() / size);
        fits = lines.size() <= most && widest(lines) * size <= room.width() &&
               double(lines.size()) * lineHeight * size <= room.height();
    }
    // As many lines of more equal width.
    Lines next = lines;
    do {
        lines = next;
        next = wrapped(pieces, widest(lines) - 0.01);
    } while (next.size() == lines.size() && widest(next) < widest(lines));
    for (Line &line : lines) {
        line.pixelSize = size;
    }
    if (lines.size() > 1) {
        accent(lines, room);
    }
    const double tooHigh = std::max(1.0, layout.height() / room.height());
    for (Line &line : lines) {
        line.pixelSize /= tooHigh;
    }
    return layout;
}

double TitleLayout::height() const
{
    double sum = 0;
    for (const Line &line : lines) {
        sum += line.pixelSize * lineHeight;
    }
    return sum;
}

} // namespace quilmora::localservice
