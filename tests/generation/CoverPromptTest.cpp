#include "generation/GenerationRequest.h"
#include "model/CoverInputs.h"
#include "support/TestProgram.h"

#include <functional>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr QStringView opening = u"生成一张视频封面图。";
constexpr QStringView closing = u"整体风格：高质量、电影感、社交媒体爆款封面风格。";

/// The prompt of inputs with a preset expression, changed by `change`.
QString promptOf(const std::function<void(CoverInputs &)> &change = {})
{
    CoverInputs inputs{};
    inputs.selectedSize = CoverSize::presets().constFirst();
    inputs.selectedEmotion = Emotion::presets().constFirst();
    if (change) {
        change(inputs);
    }
    return composePrompt(inputs);
}

/// The prompt of inputs with an expression of the user's, which is empty, changed by `change`.
QString customPromptOf(const std::function<void(CoverInputs &)> &change)
{
    return promptOf([&change](CoverInputs &inputs) {
        inputs.selectedEmotion = Emotion::presets().constLast();
        change(inputs);
    });
}

} // namespace

class CoverPromptTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void titleAndPresetExpression()
    {
        QCOMPARE(promptOf([](CoverInputs &inputs) { inputs.titleText = u"三天学会"_s; }),
                 u"生成一张视频封面图。 封面主标题文字：「三天学会」，标题需突出醒目、具有冲击力。 "
                 "人物表情：震惊。 整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
    }

    void allPiecesInTheirOrder()
    {
        const QString prompt = customPromptOf([](CoverInputs &inputs) {
            inputs.titleText = u"标题"_s;
            inputs.sceneText = u"书房"_s;
            inputs.customEmotion = u"若有所思"_s;
            inputs.advancedText = u"霓虹色"_s;
        });
        QCOMPARE(prompt, opening + u" 封面主标题文字：「标题」，标题需突出醒目、具有冲击力。"_s +
                             u" 背景场景：书房。 人物表情：若有所思。 额外风格指令：霓虹色。 "_s + closing);
    }

    void titleAndSceneAreInsertedAsTyped()
    {
        for (const QString &title : {u"标题"_s, u" \t"_s, u"「a」\n\"b\" 👩‍💻"_s}) {
            const QString prompt =
                customPromptOf([&title](CoverInputs &inputs) { inputs.titleText = title; });
            QCOMPARE(prompt, opening + u" 封面主标题文字：「"_s + title +
                                 u"」，标题需突出醒目、具有冲击力。 "_s + closing);
        }
        QCOMPARE(customPromptOf([](CoverInputs &inputs) { inputs.sceneText = u"\n"_s; }),
                 opening + u" 背景场景：\n。 "_s + closing);
    }

    void everyPresetExpressionIsNamed()
    {
        for (const Emotion &emotion : Emotion::presets()) {
            const QString piece = emotion.isCustom() ? QString{} : u"人物表情："_s + emotion.name + u"。 "_s;
            QCOMPARE(promptOf([&emotion](CoverInputs &inputs) { inputs.selectedEmotion = emotion; }),
                     opening + u' ' + piece + closing);
        }
        const QString prompt = promptOf([](CoverInputs &inputs) { inputs.customEmotion = u"开心"_s; });
        QVERIFY(!prompt.contains(u"开心"_s));
    }

    void customExpressionIsTrimmed_data()
    {
        const DataRows<QString, QString> row{"typed", "piece"};
        row("empty", u""_s, u""_s);
        row("blanks and tabs only", u" \t  "_s, u""_s);
        row("full-width blanks only", u"\u3000\u3000"_s, u""_s);
        row("blanks around a word", u"  开心 "_s, u"人物表情：开心。 "_s);
        row("tabs and wide blanks around", u"\t\u3000开心\u00a0"_s, u"人物表情：开心。 "_s);
        row("blanks inside stay", u" 又 惊 又喜 "_s, u"人物表情：又 惊 又喜。 "_s);
        row("line breaks stay", u" \n开心\n "_s, u"人物表情：\n开心\n。 "_s);
        row("the custom entry's own name", u" 自定义... "_s, u""_s);
    }

    void customExpressionIsTrimmed()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, piece);
        QCOMPARE(customPromptOf([&typed](CoverInputs &inputs) { inputs.customEmotion = typed; }),
                 opening + u' ' + piece + closing);
    }

    void extraInstructionsAreLeftOutOrKeptAsTyped()
    {
        const auto promptWith = [](const QString &typed) {
            return customPromptOf([&typed](CoverInputs &inputs) { inputs.advancedText = typed; });
        };
        for (const QString &blank : {u""_s, u"   "_s, u"\t\u3000\u2003"_s}) {
            QCOMPARE(promptWith(blank), opening + u' ' + closing);
        }
        for (const QString &typed : {u" \t赛博朋克 "_s, u"\n"_s}) {
            QCOMPARE(promptWith(typed), opening + u" 额外风格指令："_s + typed + u"。 "_s + closing);
        }
    }

    void sizeIsNoPartOfThePrompt()
    {
        QCOMPARE(
            promptOf([](CoverInputs &inputs) { inputs.selectedSize = CoverSize::presets().constLast(); }),
            promptOf());
        QVERIFY(!promptOf().contains(u"2848"_s));
    }
};

QUILMORA_TEST(CoverPromptTest, runCoreTest)
#include "CoverPromptTest.moc"
