#include "local_service/cover/PromptReader.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

class PromptReaderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFullPromptGivesAllPieces();
    void missingPiecesAreEmpty();
    void aTitleMayHoldBracketsAndHeadings();
    void aTitleWithoutItsEndingStopsAtTheBracket();
    void aTitleThatNeverEndsTakesTheRest();
    void aSceneMayHoldFullStops();
    void aSceneAtTheEndLosesItsFullStop();
    void aForeignPromptIsAllScene();
    void anEmptyPromptGivesNothing();
};

void PromptReaderTest::aFullPromptGivesAllPieces()
{
    const CoverPrompt prompt =
        promptReader::read(u"生成一张视频封面图。 封面主标题文字：「月入十万」，标题需突出醒目、具有冲击力。 "
                           "背景场景：豪华办公室。 人物表情：震惊。 额外风格指令：赛博朋克。 "
                           "整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
    QCOMPARE(prompt.title, u"月入十万"_s);
    QCOMPARE(prompt.scene, u"豪华办公室"_s);
    QCOMPARE(prompt.expression, u"震惊"_s);
    QCOMPARE(prompt.style, u"赛博朋克"_s);
}

void PromptReaderTest::missingPiecesAreEmpty()
{
    const CoverPrompt prompt = promptReader::read(
        u"生成一张视频封面图。 人物表情：大笑。 整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
    QCOMPARE(prompt.title, QString{});
    QCOMPARE(prompt.scene, QString{});
    QCOMPARE(prompt.expression, u"大笑"_s);
    QCOMPARE(prompt.style, QString{});
}

void PromptReaderTest::aTitleMayHoldBracketsAndHeadings()
{
    const CoverPrompt prompt = promptReader::read(
        u"生成一张视频封面图。 封面主标题文字：「「甲」 背景场景：乙。」，标题需突出醒目、具有冲击力。 "
        "背景场景：海边。 整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
    QCOMPARE(prompt.title, u"「甲」 背景场景：乙。"_s);
    QCOMPARE(prompt.scene, u"海边"_s);
}

void PromptReaderTest::aTitleWithoutItsEndingStopsAtTheBracket()
{
    const CoverPrompt prompt = promptReader::read(u"封面主标题文字：「甲乙」 背景场景：森林"_s);
    QCOMPARE(prompt.title, u"甲乙"_s);
    QCOMPARE(prompt.scene, u"森林"_s);
}

void PromptReaderTest::aTitleThatNeverEndsTakesTheRest()
{
    const CoverPrompt prompt = promptReader::read(u"封面主标题文字：「甲乙丙"_s);
    QCOMPARE(prompt.title, u"甲乙丙"_s);
    QCOMPARE(prompt.scene, QString{});
}

void PromptReaderTest::aSceneMayHoldFullStops()
{
    const CoverPrompt prompt = promptReader::read(
        u"生成一张视频封面图。 背景场景：书桌。窗外是雪山。 人物表情：坚定。 整体风格：高质量。"_s);
    QCOMPARE(prompt.scene, u"书桌。窗外是雪山"_s);
    QCOMPARE(prompt.expression, u"坚定"_s);
}

void PromptReaderTest::aSceneAtTheEndLosesItsFullStop()
{
    QCOMPARE(promptReader::read(u"背景场景：海边。"_s).scene, u"海边"_s);
}

void PromptReaderTest::aForeignPromptIsAllScene()
{
    const CoverPrompt prompt = promptReader::read(u" a quiet beach at dawn "_s);
    QCOMPARE(prompt.scene, u"a quiet beach at dawn"_s);
    QCOMPARE(prompt.title, QString{});
}

void PromptReaderTest::anEmptyPromptGivesNothing()
{
    const CoverPrompt prompt = promptReader::read({});
    QCOMPARE(prompt.title, QString{});
    QCOMPARE(prompt.scene, QString{});
}

QTEST_GUILESS_MAIN(PromptReaderTest)

#include "PromptReaderTest.moc"
