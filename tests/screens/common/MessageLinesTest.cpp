#include "screens/common/MessageLines.h"

#include <QTest>
#include <QTextBoundaryFinder>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quilmora;

class MessageLinesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordinaryTextsAreShownAsTheyAre_data();
    void ordinaryTextsAreShownAsTheyAre();
    void everyBreakIsOneLineFeedAndComesBackAsItWas();
    void longLinesAreBrokenAtBlanks();
    void longLinesWithoutBlanksAreBrokenBetweenCharacters();
    void everyPartComesBackToTheCharacter();
    void aMillionShortLinesShareParagraphs();
};

namespace
{

qsizetype longestLineOf(const QString &text)
{
    qsizetype longest = 0;
    for (const QString &line : text.split(u'\n')) {
        longest = std::max(longest, line.size());
    }
    return longest;
}

} // namespace

void MessageLinesTest::ordinaryTextsAreShownAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString{};
    QTest::newRow("a sentence") << u"请求超时"_s;
    QTest::newRow("lines") << u"a\n\nb\n"_s;
    QTest::newRow("markup") << u"<b>&amp;</b> & \u00a0"_s;
    QTest::newRow("a line just short enough") << QString{2000, u'x'};
}

void MessageLinesTest::ordinaryTextsAreShownAsTheyAre()
{
    QFETCH(const QString, text);
    const MessageLines lines{text};
    QCOMPARE(lines.shown(), text);
    QCOMPARE(lines.originalBetween(0, text.size()), text);
}

void MessageLinesTest::everyBreakIsOneLineFeedAndComesBackAsItWas()
{
    const QString text = u"a\r\nb\rc\nd\u2029e\r\n\r\nf"_s;
    const MessageLines lines{text};
    QCOMPARE(lines.shown(), u"a\nb\nc\nd\ne\n\nf"_s);
    QCOMPARE(lines.originalBetween(0, lines.shown().size()), text);
    QCOMPARE(lines.originalBetween(0, 2), u"a\r\n"_s);
    QCOMPARE(lines.originalBetween(2, 3), u"b"_s);
    QCOMPARE(lines.originalBetween(9, 12), u"\r\n\r\nf"_s);
}

void MessageLinesTest::longLinesAreBrokenAtBlanks()
{
    const QString text = u"word and "_s.repeated(3000);
    const MessageLines lines{text};
    QVERIFY(longestLineOf(lines.shown()) <= 2000);
    for (const QString &line : lines.shown().split(u'\n')) {
        QVERIFY2(line.isEmpty() || line.endsWith(u' '), qPrintable(line.right(20)));
    }
    QCOMPARE(lines.originalBetween(0, lines.shown().size()), text);
}

void MessageLinesTest::longLinesWithoutBlanksAreBrokenBetweenCharacters()
{
    // A family of seven code points, eleven units long.
    const QString family = u"👨‍👩‍👧‍👦"_s;
    const QString text = family.repeated(1000);
    const MessageLines lines{text};
    const QStringList pieces = lines.shown().split(u'\n');
    QVERIFY(pieces.size() > 4);
    for (const QString &piece : pieces) {
        QCOMPARE(piece.size() % family.size(), 0);
        QVERIFY(piece.size() <= 2000);
    }
    QCOMPARE(lines.originalBetween(0, lines.shown().size()), text);
}

void MessageLinesTest::everyPartComesBackToTheCharacter()
{
    QString text;
    for (int i = 0; text.size() < 30000; ++i) {
        text += QString::number(i) + (i % 700 == 0 ? u"\r\n"_s : u","_s);
    }
    const MessageLines lines{text};
    const QString &shown = lines.shown();
    QVERIFY(shown.count(u'\n') > text.count(u"\r\n"_s));
    // Cut anywhere, the parts make the whole, and none holds a break of ours.
    for (qsizetype place = 0; place <= shown.size(); place += 37) {
        QCOMPARE(lines.originalBetween(0, place) + lines.originalBetween(place, shown.size()), text);
    }
}

void MessageLinesTest::aMillionShortLinesShareParagraphs()
{
    const QString text = u"\n"_s.repeated(1000000);
    const MessageLines lines{text};
    QVERIFY(lines.shown().count(u'\n') <= 20001);
    QCOMPARE(lines.shown().size(), text.size());
    QCOMPARE(lines.originalBetween(0, text.size()), text);
}

QTEST_GUILESS_MAIN(MessageLinesTest)
#include "MessageLinesTest.moc"
