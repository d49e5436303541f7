#include "local_service/cover/PromptParts.h"

#include "support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora::localservice;

class PromptPartsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partsAreTold_data();
    void partsAreTold();
};

void PromptPartsTest::partsAreTold_data()
{
    QTest::addColumn<QString>("prompt");
    QTest::addColumn<QStringList>("parts");
    const auto row = [](const char *name, const QString &prompt, const QStringList &parts) {
        QTest::newRow(name) << prompt << parts;
    };
    const QString end = u"」，标题需突出醒目、具有冲击力。 "_s;
    row("all",
        u"生成一张视频封面图。 封面主标题文字：「月入十万"_s + end +
            u"背景场景：豪华办公室。 人物表情：震惊。 额外风格指令：赛博朋克。 整体风格：高质量、电影感。"_s,
        {u"月入十万"_s, u"豪华办公室"_s, u"震惊"_s, u"赛博朋克"_s});
    row("one", u"生成一张视频封面图。 人物表情：大笑。 整体风格：高质量、电影感。"_s,
        {{}, {}, u"大笑"_s, {}});
    row("brackets and headings in the title",
        u"生成。 封面主标题文字：「「甲」 背景场景：乙。"_s + end + u"背景场景：海边。 整体风格：高质量。"_s,
        {u"「甲」 背景场景：乙。"_s, u"海边"_s, {}, {}});
    row("title without its usual end", u"封面主标题文字：「甲乙」 背景场景：森林"_s,
        {u"甲乙"_s, u"森林"_s, {}, {}});
    row("title that never ends", u"封面主标题文字：「甲乙丙"_s, {u"甲乙丙"_s, {}, {}, {}});
    row("full stops in the scene", u"图。 背景场景：书桌。窗外是雪山。 人物表情：坚定。 整体风格：高质量。"_s,
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

void PromptPartsTest::partsAreTold()
{
    QFETCH(const QString, prompt);
    const PromptParts parts = PromptParts::of(prompt);
    QTEST(QStringList({parts.title, parts.scene, parts.expression, parts.style}), "parts");
}

QUILMORA_TEST(PromptPartsTest, quilmora::test::runCoreTest)

#include "PromptPartsTest.moc"
