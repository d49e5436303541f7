#include "generation/CoverPrompt.h"

#include "generation/CoverInputs.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

namespace
{

constexpr QStringView opening = u"生成一张视频封面图。";
constexpr QStringView closing = u"整体风格：高质量、电影感、社交媒体爆款封面风格。";

CoverInputs emptyInputs()
{
    CoverInputs inputs{};
    inputs.selectedSize = CoverSize::presets().constFirst();
    inputs.selectedEmotion = Emotion::presets().constFirst();
    return inputs;
}

CoverInputs customInputs(const QString &expression)
{
    CoverInputs inputs = emptyInputs();
    inputs.selectedEmotion = Emotion::presets().constLast();
    inputs.customEmotion = expression;
    return inputs;
}

} // namespace

class CoverPromptTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void titleAndPresetExpression();
    void allPiecesInTheirOrder();
    void titleOnlyIsThreePiecesAndTwoBlanks();
    void titleAndSceneAreInsertedAsTyped();
    void everyPresetExpressionIsNamed();
    void customExpressionIsTrimmed_data();
    void customExpressionIsTrimmed();
    void customTextIsIgnoredForAPreset();
    void extraInstructionsOfBlanksAreLeftOut_data();
    void extraInstructionsOfBlanksAreLeftOut();
    void extraInstructionsKeepTheirBlanks();
    void sizeIsNoPartOfThePrompt();
};

void CoverPromptTest::titleAndPresetExpression()
{
    CoverInputs inputs = emptyInputs();
    inputs.titleText = u"三天学会"_s;
    QCOMPARE(composePrompt(inputs), u"生成一张视频封面图。 "
                                    u"封面主标题文字：「三天学会」，标题需突出醒目、具有冲击力。 "
                                    u"人物表情：震惊。 "
                                    u"整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
}

void CoverPromptTest::allPiecesInTheirOrder()
{
    CoverInputs inputs = customInputs(u"若有所思"_s);
    inputs.titleText = u"标题"_s;
    inputs.sceneText = u"书房"_s;
    inputs.advancedText = u"霓虹色"_s;
    QCOMPARE(composePrompt(inputs), opening + u" 封面主标题文字：「标题」，标题需突出醒目、具有冲击力。"_s +
                                        u" 背景场景：书房。 人物表情：若有所思。 额外风格指令：霓虹色。 "_s +
                                        closing);
}

void CoverPromptTest::titleOnlyIsThreePiecesAndTwoBlanks()
{
    CoverInputs inputs = customInputs({});
    inputs.titleText = u"标题"_s;
    const QString prompt = composePrompt(inputs);
    QCOMPARE(prompt.count(u' '), 2);
    QVERIFY(prompt.startsWith(opening + u' '));
    QVERIFY(prompt.endsWith(u' ' + closing));
}

void CoverPromptTest::titleAndSceneAreInsertedAsTyped()
{
    CoverInputs inputs = customInputs({});
    inputs.titleText = u" \t"_s;
    inputs.sceneText = u"\n"_s;
    QCOMPARE(composePrompt(inputs), opening + u" 封面主标题文字：「 \t」，标题需突出醒目、具有冲击力。"_s +
                                        u" 背景场景：\n。 "_s + closing);
    inputs.titleText = u"「a」\n\"b\" 👩‍💻"_s;
    QVERIFY(composePrompt(inputs).contains(u"「「a」\n\"b\" 👩‍💻」"_s));
}

void CoverPromptTest::everyPresetExpressionIsNamed()
{
    CoverInputs inputs = emptyInputs();
    for (const Emotion &emotion : Emotion::presets()) {
        inputs.selectedEmotion = emotion;
        const QString piece = emotion.isCustom() ? QString{} : u"人物表情："_s + emotion.name + u"。 "_s;
        QCOMPARE(composePrompt(inputs), opening + u' ' + piece + closing);
    }
}

void CoverPromptTest::customExpressionIsTrimmed_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("piece");
    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("blanks and tabs only") << u" \t  "_s << u""_s;
    QTest::newRow("full-width blanks only") << u"\u3000\u3000"_s << u""_s;
    QTest::newRow("blanks around a word") << u"  开心 "_s << u"人物表情：开心。 "_s;
    QTest::newRow("tabs and wide blanks around") << u"\t\u3000开心\u00a0"_s << u"人物表情：开心。 "_s;
    QTest::newRow("blanks inside stay") << u" 又 惊 又喜 "_s << u"人物表情：又 惊 又喜。 "_s;
    QTest::newRow("line breaks stay") << u" \n开心\n "_s << u"人物表情：\n开心\n。 "_s;
    QTest::newRow("the custom entry's own name") << u" 自定义... "_s << u""_s;
}

void CoverPromptTest::customExpressionIsTrimmed()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, piece);
    QCOMPARE(composePrompt(customInputs(typed)), opening + u' ' + piece + closing);
}

void CoverPromptTest::customTextIsIgnoredForAPreset()
{
    CoverInputs inputs = emptyInputs();
    inputs.customEmotion = u"开心"_s;
    QVERIFY(!composePrompt(inputs).contains(u"开心"_s));
}

void CoverPromptTest::extraInstructionsOfBlanksAreLeftOut_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("blanks") << u"   "_s;
    QTest::newRow("tabs and wide blanks") << u"\t\u3000\u2003"_s;
}

void CoverPromptTest::extraInstructionsOfBlanksAreLeftOut()
{
    QFETCH(const QString, typed);
    CoverInputs inputs = customInputs({});
    inputs.advancedText = typed;
    QCOMPARE(composePrompt(inputs), opening + u' ' + closing);
}

void CoverPromptTest::extraInstructionsKeepTheirBlanks()
{
    CoverInputs inputs = customInputs({});
    inputs.advancedText = u" \t赛博朋克 "_s;
    QCOMPARE(composePrompt(inputs), opening + u" 额外风格指令： \t赛博朋克 。 "_s + closing);
    inputs.advancedText = u"\n"_s;
    QCOMPARE(composePrompt(inputs), opening + u" 额外风格指令：\n。 "_s + closing);
}

void CoverPromptTest::sizeIsNoPartOfThePrompt()
{
    CoverInputs inputs = emptyInputs();
    const QString prompt = composePrompt(inputs);
    inputs.selectedSize = CoverSize::presets().constLast();
    QCOMPARE(composePrompt(inputs), prompt);
    QVERIFY(!prompt.contains(u"2848"_s));
}

QTEST_GUILESS_MAIN(CoverPromptTest)
#include "CoverPromptTest.moc"
