#include "local_service/cover/PromptParts.h"
#include "local_service/cover/TitleLayout.h"
#include "support/TestProgram.h"

using namespace quilmora::test;
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

class CoverTextTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partsAreTold_data()
    {
        const DataRows<QString, QStringList> row{"prompt", "parts"};
        const QString end = u"」，标题需突出醒目、具有冲击力。 "_s;
        row("all",
            u"生成一张视频封面图。 封面主标题文字：「月入十万"_s + end +
                u"背景场景：豪华办公室。 人物表情：震惊。 额外风格指令：赛博朋克。 整体风格：高质量、电影感。"_s,
            {u"月入十万"_s, u"豪华办公室"_s, u"震惊"_s, u"赛博朋克"_s});
        row("one", u"生成一张视频封面图。 人物表情：大笑。 整体风格：高质量、电影感。"_s,
            {{}, {}, u"大笑"_s, {}});
        row("brackets and headings in the title",
            u"生成。 封面主标题文字：「「甲」 背景场景：乙。"_s + end +
                u"背景场景：海边。 整体风格：高质量。"_s,
            {u"「甲」 背景场景：乙。"_s, u"海边"_s, {}, {}});
        row("title without its usual end", u"封面主标题文字：「甲乙」 背景场景：森林"_s,
            {u"甲乙"_s, u"森林"_s, {}, {}});
        row("title that never ends", u"封面主标题文字：「甲乙丙"_s, {u"甲乙丙"_s, {}, {}, {}});
        row("full stops in the scene",
            u"图。 背景场景：书桌。窗外是雪山。 人物表情：坚定。 整体风格：高质量。"_s,
            {{}, u"书桌。窗外是雪山"_s, u"坚定"_s, {}});
        row("heading within a sentence", u"背景场景：海边的背景场景：甲。"_s,
            {{}, u"海边的背景场景：甲"_s, {}, {}});
        row("full stop at the end", u"背景场景：海边。"_s, {{}, u"海边"_s, {}, {}});
        row("no heading", u" a quiet beach at dawn "_s, {{}, u"a quiet beach at dawn"_s, {}, {}});
        row("empty", {}, {{}, {}, {}, {}});
        row("100,000 signs", u"字"_s.repeated(100'000), {{}, u"字"_s.repeated(100'000), {}, {}});
        row("100,000 signs behind a heading", u"背景场景："_s + u" 字"_s.repeated(50'000),
            {{}, u" 字"_s.repeated(50'000).trimmed(), {}, {}});
    }

    void partsAreTold()
    {
        QFETCH(const QString, prompt);
        const PromptParts parts = PromptParts::of(prompt);
        QTEST(QStringList({parts.title, parts.scene, parts.expression, parts.style}), "parts");
    }

    /// The accented line is marked by a star.
    void linesEndBetweenWords_data()
    {
        const DataRows<QString, QString> row{"title", "lines"};
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

    void linesEndBetweenWords()
    {
        QFETCH(const QString, title);
        QTEST(linesOf(title).join(u'|'), "lines");
    }

    void linesFitTheirRoom_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("one sign") << u"钱"_s;
        QTest::newRow("middling") << u"普通人如何赚到第一桶金？"_s;
        QTest::newRow("long") << u"我用三年时间走遍了全国所有的城市，终于找到了最适合普通人生活的地方"_s;
        QTest::newRow("Latin") << u"How I Built a Startup in 30 Days"_s;
        QTest::newRow("endless") << u"封面"_s.repeated(5000);
        QTest::newRow("endless word") << u"a"_s.repeated(10'000);
    }

    void linesFitTheirRoom()
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

    void veryLongTitlesAreCut()
    {
        for (const QString &sign : {u"字"_s, u"a"_s}) {
            const QStringList lines = linesOf(sign.repeated(10'000));
            QVERIFY(lines.size() > 1);
            QVERIFY(lines.last().endsWith(u'…'));
            QCOMPARE(lines.join(QString{}).remove(u'*').size(), TitleLayout::mostSigns);
        }
    }
};

QUILMORA_TEST(CoverTextTest, runGuiTest)
#include "CoverTextTest.moc"
