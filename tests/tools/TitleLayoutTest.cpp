#include "local_service/cover/TitleLayout.h"

#include "support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora::localservice;

namespace {

constexpr QSizeF room{1200, 1100};
constexpr int mostLines = 4;

QStringList linesOf(const QString &title)
{
    QStringList result;
    const TitleLayout layout = TitleLayout::of(title, room, mostLines);
    for (const TitleLayout::Line &line : layout.lines) {
        result.append((line.accented ? u"*"_s : QString{}) + line.text);
    }
    return result;
}

} // namespace

class TitleLayoutTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesEndBetweenWords_data();
    void linesEndBetweenWords();
    void linesFitTheirRoom_data();
    void linesFitTheirRoom();
    void veryLongTitlesAreCut();
};

/// The accented line is marked by a star.
void TitleLayoutTest::linesEndBetweenWords_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("lines");
    const auto row = [](const char *name, const QString &title, const QString &lines) {
        QTest::newRow(name) << title << lines;
    };
    row("one line", u"秘密"_s, u"秘密"_s);
    row("words", u"这个秘密改变了一切"_s, u"这个秘密|改变了|*一切"_s);
    row("words of three", u"普通人如何赚到第一桶金？"_s, u"普通人如何|赚到|*第一桶金？"_s);
    row("particles", u"一个人的海边旅行"_s, u"一个人的|*海边旅行"_s);
    row("no line of one sign", u"甲乙丙丁戊己庚辛壬"_s, u"甲乙丙|丁戊己|*庚辛壬"_s);
    row("number", u"我靠这个赚了100万"_s, u"我靠这个|赚了|*100万"_s);
    row("number and measure", u"3分钟学会AI做封面"_s, u"*3分钟|学会AI|做封面"_s);
    row("punctuation", u"「秘密」，世界！"_s, u"「秘密」，|*世界！"_s);
    row("Latin", u"How I Built a Startup in 30 Days"_s, u"How I|Built a|Startup|*in 30 Days"_s);
    row("slash between blanks", u"逃离城市 / 去森林"_s, u"逃离城市|*去森林"_s);
    row("line break", u"周末的\n一天"_s, u"周末的|*一天"_s);
    row("more line breaks than lines", u"甲\n乙\n丙\n丁\n戊"_s, u"甲 乙|*丙 丁 戊"_s);
    row("emoji", u"爆款🔥🔥封面👨‍👩‍👧"_s, u"爆款|*封面"_s);
    row("control character", u"一\u0007切"_s, u"一切"_s);
    row("rare sign", u"𠮷"_s, u"𠮷"_s);
    row("empty", {}, {});
    row("blanks", u" \t\n　"_s, {});
    row("only emoji", u"🔥😀"_s, {});
}

void TitleLayoutTest::linesEndBetweenWords()
{
    QFETCH(const QString, title);
    QTEST(linesOf(title).join(u'|'), "lines");
}

void TitleLayoutTest::linesFitTheirRoom_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("one sign") << u"钱"_s;
    QTest::newRow("middling") << u"普通人如何赚到第一桶金？"_s;
    QTest::newRow("long") << u"我用三年时间走遍了全国所有的城市，终于找到了最适合普通人生活的地方"_s;
    QTest::newRow("Latin") << u"How I Built a Startup in 30 Days"_s;
    QTest::newRow("endless") << u"封面"_s.repeated(5000);
    QTest::newRow("endless word") << u"a"_s.repeated(10'000);
}

void TitleLayoutTest::linesFitTheirRoom()
{
    QFETCH(const QString, title);
    for (const QSizeF size : {room, QSizeF{2400, 300}, QSizeF{300, 2400}}) {
        const TitleLayout layout = TitleLayout::of(title, size, mostLines);
        QVERIFY(!layout.lines.isEmpty());
        QVERIFY(layout.lines.size() <= mostLines);
        QVERIFY(layout.height() <= size.height() + 0.5);
        for (const TitleLayout::Line &line : layout.lines) {
            QVERIFY(line.pixelSize > 0);
            QVERIFY(line.width * line.pixelSize <= size.width() + 0.5);
        }
    }
}

void TitleLayoutTest::veryLongTitlesAreCut()
{
    for (const QString &sign : {u"字"_s, u"a"_s}) {
        const QStringList lines = linesOf(sign.repeated(10'000));
        QVERIFY(lines.size() > 1);
        QVERIFY(lines.last().endsWith(u'…'));
        QCOMPARE(lines.join(QString{}).remove(u'*').size(), TitleLayout::mostSigns);
    }
}

QUILMORA_TEST(TitleLayoutTest, quilmora::test::runGuiTest)

#include "TitleLayoutTest.moc"
