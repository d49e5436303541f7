#include "local_service/cover/TitleLayout.h"

#include "local_service/cover/TitleWords.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quilmora;

namespace
{

constexpr QSizeF room{1200, 1100};
constexpr int mostLines = 4;

QStringList textsOf(const TitleLayout &layout)
{
    QStringList result;
    for (const TitleLayout::Line &line : layout.lines()) {
        result.append(line.text);
    }
    return result;
}

QStringList linesOf(const QString &title)
{
    return textsOf(TitleLayout{title, room, mostLines});
}

QStringList wordsOf(const QString &title)
{
    QStringList result;
    const QList<TitleWord> words = TitleWord::split(title, TitleLayout::mostWords);
    for (const TitleWord &word : words) {
        result.append(word.text);
    }
    return result;
}

} // namespace

class TitleLayoutTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsKeepTogetherWhatBelongsTogether_data();
    void wordsKeepTogetherWhatBelongsTogether();
    void linesFitTheirRoom_data();
    void linesFitTheirRoom();
    void nothingIsLost();
    void aShortTitleStaysInOneLine();
    void aSlashBetweenBlanksBreaks();
    void aLineBreakBreaks();
    void commonWordsAreNotCut();
    void particlesDoNotBeginALine();
    void theLineWithTheNumberIsAccented();
    void elseTheLastLineIsAccented();
    void aSingleLineIsNotAccented();
    void aVeryLongTitleEndsInAnEllipsis();
    void aLongWordWithoutBlanksIsCut();
    void signsWithoutOutlineAreLeftOut();
    void nothingToShowGivesNoLines();
};

void TitleLayoutTest::wordsKeepTogetherWhatBelongsTogether_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("words");
    QTest::newRow("signs") << u"月入十万"_s << QStringList{u"月"_s, u"入"_s, u"十"_s, u"万"_s};
    QTest::newRow("Latin") << u"学AI剪辑"_s << QStringList{u"学"_s, u"AI"_s, u"剪"_s, u"辑"_s};
    QTest::newRow("punctuation") << u"你好，「世界」！"_s
                                 << QStringList{u"你"_s, u"好，"_s, u"「世"_s, u"界」！"_s};
    QTest::newRow("number and measure") << u"3分钟"_s << QStringList{u"3分"_s, u"钟"_s};
    QTest::newRow("percent") << u"90%的人"_s << QStringList{u"90%"_s, u"的"_s, u"人"_s};
    QTest::newRow("blanks") << u"How  to win"_s << QStringList{u"How"_s, u"to"_s, u"win"_s};
    QTest::newRow("slash") << u"甲 / 乙"_s << QStringList{u"甲"_s, u"乙"_s};
    QTest::newRow("slash inside") << u"A/B test"_s << QStringList{u"A/B"_s, u"test"_s};
}

void TitleLayoutTest::wordsKeepTogetherWhatBelongsTogether()
{
    QFETCH(const QString, title);
    QFETCH(const QStringList, words);
    QCOMPARE(wordsOf(title), words);
}

void TitleLayoutTest::linesFitTheirRoom_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("one sign") << u"钱"_s;
    QTest::newRow("short") << u"月入十万"_s;
    QTest::newRow("middling") << u"普通人如何赚到第一桶金？"_s;
    QTest::newRow("long") << u"我用三年时间走遍了全国所有的城市，终于找到了最适合普通人生活的地方"_s;
    QTest::newRow("Latin") << u"How I Built a Startup in 30 Days"_s;
    QTest::newRow("endless") << u"封面"_s.repeated(5000);
}

void TitleLayoutTest::linesFitTheirRoom()
{
    QFETCH(const QString, title);
    for (const QSizeF size : {room, QSizeF{2400, 300}, QSizeF{300, 2400}}) {
        const TitleLayout layout{title, size, mostLines};
        QVERIFY(!layout.lines().isEmpty());
        QVERIFY(layout.lines().size() <= mostLines);
        QVERIFY(layout.height() <= size.height() + 0.5);
        for (const TitleLayout::Line &line : layout.lines()) {
            QVERIFY(line.width <= size.width() + 0.5);
            QVERIFY(line.pixelSize > 0);
        }
    }
}

void TitleLayoutTest::nothingIsLost()
{
    const QString title = u"普通人如何赚到第一桶金？这10个方法你必须知道！"_s;
    QCOMPARE(linesOf(title).join(QString{}), title);
    QCOMPARE(linesOf(u"How I Built a Startup in 30 Days"_s).join(u' '),
             u"How I Built a Startup in 30 Days"_s);
}

void TitleLayoutTest::aShortTitleStaysInOneLine()
{
    QCOMPARE(textsOf(TitleLayout{u"秘密"_s, {2000, 600}, mostLines}), QStringList{u"秘密"_s});
}

void TitleLayoutTest::aSlashBetweenBlanksBreaks()
{
    QCOMPARE(linesOf(u"逃离城市 / 去森林"_s), (QStringList{u"逃离城市"_s, u"去森林"_s}));
}

void TitleLayoutTest::aLineBreakBreaks()
{
    QCOMPARE(linesOf(u"周末的\n一天"_s), (QStringList{u"周末的"_s, u"一天"_s}));
}

void TitleLayoutTest::commonWordsAreNotCut()
{
    const QStringList lines = linesOf(u"普通人如何赚到第一桶金？"_s);
    QVERIFY(lines.size() > 1);
    for (const QString &word : {u"普通"_s, u"如何"_s, u"赚到"_s, u"第一"_s, u"桶金"_s}) {
        QVERIFY2(std::any_of(lines.begin(), lines.end(),
                             [&word](const QString &line) { return line.contains(word); }),
                 qPrintable(lines.join(u'|')));
    }
}

void TitleLayoutTest::particlesDoNotBeginALine()
{
    const QStringList lines = linesOf(u"深夜的城市不打烊了"_s);
    QVERIFY(lines.size() > 1);
    for (const QString &line : lines) {
        QVERIFY(!line.startsWith(u'的') && !line.startsWith(u'了'));
    }
}

void TitleLayoutTest::theLineWithTheNumberIsAccented()
{
    const TitleLayout layout{u"3分钟学会AI做封面"_s, room, mostLines};
    QVERIFY(layout.lines().size() > 1);
    for (const TitleLayout::Line &line : layout.lines()) {
        QCOMPARE(line.accented, line.text.contains(u'3'));
    }
}

void TitleLayoutTest::elseTheLastLineIsAccented()
{
    const TitleLayout layout{u"逃离城市 / 去森林"_s, room, mostLines};
    QCOMPARE(layout.lines().size(), 2);
    QVERIFY(!layout.lines().constFirst().accented);
    QVERIFY(layout.lines().constLast().accented);
    QVERIFY(layout.lines().constLast().pixelSize > layout.lines().constFirst().pixelSize);
}

void TitleLayoutTest::aSingleLineIsNotAccented()
{
    const TitleLayout layout{u"第1"_s, {3000, 300}, mostLines};
    QCOMPARE(layout.lines().size(), 1);
    QVERIFY(!layout.lines().constFirst().accented);
}

void TitleLayoutTest::aVeryLongTitleEndsInAnEllipsis()
{
    QElapsedTimer timer;
    timer.start();
    const QStringList lines = linesOf(u"字"_s.repeated(10'000));
    QVERIFY(timer.elapsed() < 5000);
    QCOMPARE(lines.size(), mostLines);
    QVERIFY(lines.last().endsWith(u'…'));
    QCOMPARE(lines.join(QString{}).size(), TitleLayout::mostWords);
}

void TitleLayoutTest::aLongWordWithoutBlanksIsCut()
{
    const TitleLayout layout{u"a"_s.repeated(10'000), room, mostLines};
    QCOMPARE(layout.lines().size(), mostLines);
    QVERIFY(layout.lines().constLast().text.endsWith(u'…'));
}

void TitleLayoutTest::signsWithoutOutlineAreLeftOut()
{
    QCOMPARE(linesOf(u"爆款🔥🔥封面👨‍👩‍👧"_s).join(QString{}), u"爆款封面"_s);
    QCOMPARE(wordsOf(u"一\u0007二"_s), (QStringList{u"一"_s, u"二"_s}));
    // Rare signs beyond the basic plane are letters, not emoji.
    QCOMPARE(wordsOf(u"𠮷"_s), QStringList{u"𠮷"_s});
}

void TitleLayoutTest::nothingToShowGivesNoLines()
{
    QVERIFY(linesOf({}).isEmpty());
    QVERIFY(linesOf(u" \t\n　"_s).isEmpty());
    QVERIFY(linesOf(u"🔥😀"_s).isEmpty());
}

QTEST_MAIN(TitleLayoutTest)

#include "TitleLayoutTest.moc"
