#include "GenerateScreen.h"
#include "support/ScreenCapture.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QStringList &expectedNames()
{
    // As they lie on the form.
    static const QStringList names{
        u"选择尺寸"_s, // the section
        u"选择尺寸"_s, // its head
        u"YouTube"_s,
        u"经典"_s,
        u"小红书"_s,
        u"抖音 / TikTok"_s,
        u"填写封面内容"_s,     // the section
        u"填写封面内容"_s,     // its head
        u"视频封面标题文本"_s, // the text above the field
        u"视频封面标题文本"_s, // the field
        u"推荐不超过16个汉字，以保证设计效果"_s,
        u"背景场景"_s,
        u"背景场景"_s,
        u"输入封面背景图中体现的元素"_s,
        u"选择表情"_s, // the section
        u"选择表情"_s, // its head
        u"震惊"_s,
        u"惊喜"_s,
        u"灿烂微笑"_s,
        u"大笑"_s,
        u"兴奋"_s,
        u"胜利"_s,
        u"调皮"_s,
        u"坚定"_s,
        u"怀疑"_s,
        u"困惑"_s,
        u"无语"_s,
        u"自定义..."_s,
        u"上传照片"_s,         // the section
        u"上传照片"_s,         // its head
        u"人脸形象（必填）"_s, // the text above the button
        u"人脸形象（必填）"_s,
        u"风格参考（上传示例封面，非必填）"_s,
        u"风格参考（上传示例封面，非必填）"_s,
        u"高级选项"_s,
        u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s, // the text above the
                                                                                     // editor
        u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s,
        u"开始生成封面"_s,
    };
    return names;
}

} // namespace

class GenerateFormTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPieceHasItsNameAndNothingElseIsThere();
    void theTabKeyFollowsTheForm();
    void placeholdersAndHintsReadAsWritten();
    void theButtonNeedsATitleOfMoreThanBlanks_data();
    void theButtonNeedsATitleOfMoreThanBlanks();
    void theButtonIsHalfTransparentWhileDisabled();
    void theAdvancedSectionStartsOpenAndFolds();
    void foldedInstructionsStillCount();
    void typedBlanksOfEveryKindReachTheService();
    void aTitleOfTenThousandCharactersIsTakenWhole();
};

void GenerateFormTest::everyPieceHasItsNameAndNothingElseIsThere()
{
    GenerateScreen screen;
    QCOMPARE(accessible::names(&screen.window), expectedNames());
}

void GenerateFormTest::theTabKeyFollowsTheForm()
{
    GenerateScreen screen;
    typeInto(screen.titleField(), u"标题"_s);
    const QStringList expected{
        u"YouTube"_s,          u"视频封面标题文本"_s,
        u"背景场景"_s,         u"震惊"_s,
        u"人脸形象（必填）"_s, u"风格参考（上传示例封面，非必填）"_s,
        u"高级选项"_s,         u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s,
        u"开始生成封面"_s,
    };
    QCOMPARE(accessible::focusOrder(&screen.window), expected);
}

void GenerateFormTest::placeholdersAndHintsReadAsWritten()
{
    GenerateScreen screen;
    QCOMPARE(screen.titleField()->placeholderText(), u"我靠这个赚了100万 / 这个秘密改变了一切"_s);
    QCOMPARE(screen.find<QLineEdit>(u"背景场景"_s)->placeholderText(),
             u"豪华办公室 / 未来科技感 / 金色财富主题"_s);
    QVERIFY(screen.shows(u"推荐不超过16个汉字，以保证设计效果"_s));
    QVERIFY(screen.shows(u"输入封面背景图中体现的元素"_s));
}

void GenerateFormTest::theButtonNeedsATitleOfMoreThanBlanks_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("empty") << QString{} << false;
    QTest::newRow("spaces") << u"   "_s << false;
    QTest::newRow("tabs and spaces") << u" \t \t"_s << false;
    QTest::newRow("full-width blanks") << u"\u3000\u3000"_s << false;
    QTest::newRow("no-break space") << u"\u00a0"_s << false;
    QTest::newRow("one letter") << u"a"_s << true;
    QTest::newRow("a letter between blanks") << u" \u3000一\t"_s << true;
    QTest::newRow("more than sixteen characters") << u"这是一个远远超过十六个汉字的封面标题文本"_s << true;
}

void GenerateFormTest::theButtonNeedsATitleOfMoreThanBlanks()
{
    QFETCH(const QString, title);
    GenerateScreen screen;
    QVERIFY(!screen.generateButton()->isEnabled());
    typeInto(screen.titleField(), title);
    QCOMPARE(screen.titleField()->text(), title);
    QTEST(screen.generateButton()->isEnabled(), "enabled");
    typeInto(screen.titleField(), u"x"_s);
    QVERIFY(screen.generateButton()->isEnabled());
    typeInto(screen.titleField(), {});
    QVERIFY(!screen.generateButton()->isEnabled());
}

void GenerateFormTest::theButtonIsHalfTransparentWhileDisabled()
{
    GenerateScreen screen;
    QAbstractButton *button = screen.generateButton();
    const auto leading = [button] {
        const QImage face = screenCapture::capture(button);
        return screenCapture::colorAt(face, {1, button->height() / 2.0});
    };
    const QColor disabled = leading();
    QVERIFY2(screenCapture::isClose(disabled, screenCapture::srgb(0.1, 0.8, 0.85, 0.5), 3),
             qPrintable(screenCapture::text(disabled)));
    typeInto(screen.titleField(), u"标题"_s);
    const QColor enabled = leading();
    QVERIFY2(screenCapture::isClose(enabled, screenCapture::srgb(0.1, 0.8, 0.85), 3),
             qPrintable(screenCapture::text(enabled)));
    const QImage face = screenCapture::capture(button);
    const QColor trailing = screenCapture::colorAt(face, {button->width() - 2.0, button->height() / 2.0});
    QVERIFY(screenCapture::isClose(trailing, screenCapture::srgb(0.95, 0.3, 0.75), 3));
}

void GenerateFormTest::theAdvancedSectionStartsOpenAndFolds()
{
    GenerateScreen screen;
    auto *header = screen.find<QAbstractButton>(u"高级选项"_s);
    QVERIFY(screen.advancedEditor() != nullptr);
    QCOMPARE(screen.advancedEditor()->height(), 80);
    // Anywhere on the row counts.
    QTest::mouseClick(header, Qt::LeftButton, {}, {header->width() / 2, 3});
    QVERIFY(screen.advancedEditor() == nullptr);
    QTest::mouseClick(header, Qt::LeftButton, {}, {header->width() - 2, 20});
    QVERIFY(screen.advancedEditor() != nullptr);
    header->setFocus(Qt::TabFocusReason);
    QTest::keyClick(header, Qt::Key_Space);
    QVERIFY(screen.advancedEditor() == nullptr);
}

void GenerateFormTest::foldedInstructionsStillCount()
{
    GenerateScreen screen;
    typeInto(screen.advancedEditor(), u"使用蓝金配色"_s);
    click(screen.find(u"高级选项"_s));
    screen.generate(u"标题"_s);
    QTRY_COMPARE(screen.server.requestCount(), 1);
    QVERIFY(screen.requestBody()[u"prompt"_s].toString().contains(u"额外风格指令：使用蓝金配色。"_s));
}

void GenerateFormTest::typedBlanksOfEveryKindReachTheService()
{
    GenerateScreen screen;
    typeInto(screen.advancedEditor(), u"\u00a0左\u00a0右\u3000"_s);
    QTest::keyClick(screen.advancedEditor(), Qt::Key_Return);
    QTest::keyClick(screen.advancedEditor(), Qt::Key_B);
    screen.generate(u" 标\u00a0题 "_s);
    QTRY_COMPARE(screen.server.requestCount(), 1);
    const QString prompt = screen.requestBody()[u"prompt"_s].toString();
    QVERIFY2(prompt.contains(u"额外风格指令：\u00a0左\u00a0右\u3000\nb。"_s), qPrintable(prompt));
    QVERIFY2(prompt.contains(u"「 标\u00a0题 」"_s), qPrintable(prompt));
}

void GenerateFormTest::aTitleOfTenThousandCharactersIsTakenWhole()
{
    GenerateScreen screen;
    const QString title = u"很长的标题"_s.repeated(2000);
    const int width = screen.view->widget()->width();
    screen.generate(title);
    QTRY_COMPARE(screen.server.requestCount(), 1);
    QVERIFY(screen.requestBody()[u"prompt"_s].toString().contains(u"「"_s + title + u"」"_s));
    QTRY_VERIFY(screen.shows(u"生成成功"_s));
    click(screen.find<QAbstractButton>(u"返回表单"_s));
    QCOMPARE(screen.titleField()->text(), title);
    QCOMPARE(screen.view->widget()->width(), width);
}

int main(int argc, char *argv[])
{
    return runScreenTest<GenerateFormTest>(argc, argv);
}

#include "GenerateFormTest.moc"
