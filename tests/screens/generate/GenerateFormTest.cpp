#include "model/CoverSize.h"
#include "model/Emotion.h"
#include "support/GenerateScreen.h"

#include <QPlainTextEdit>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The form as a user fills it in. AccessibleTreeTest has the names of all its pieces.
class GenerateFormTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTabKeyFollowsTheForm()
    {
        GenerateScreen screen;
        typeInto(screen.titleField(), u"标题"_s);
        const QStringList expected{CoverSize::presets().at(0).name, texts::title,        texts::scene,
                                   Emotion::presets().at(0).name,   texts::facePhoto,    texts::stylePicture,
                                   texts::advancedOptions,          texts::instructions, texts::start};
        QCOMPARE(accessible::focusOrder(&screen.window), expected);
    }

    void placeholdersReadAsWritten()
    {
        GenerateScreen screen;
        QCOMPARE(screen.titleField()->placeholderText(), u"我靠这个赚了100万 / 这个秘密改变了一切"_s);
        QCOMPARE(screen.find<QLineEdit>(texts::scene)->placeholderText(),
                 u"豪华办公室 / 未来科技感 / 金色财富主题"_s);
    }

    void theButtonNeedsATitleOfMoreThanBlanks_data()
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
        QTest::newRow("more than sixteen characters")
            << u"这是一个远远超过十六个汉字的封面标题文本"_s << true;
    }

    void theButtonNeedsATitleOfMoreThanBlanks()
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

    void theAdvancedSectionStartsOpenAndFolds()
    {
        GenerateScreen screen;
        auto *header = screen.find<QAbstractButton>(texts::advancedOptions);
        QVERIFY(screen.advancedEditor() != nullptr);
        // Anywhere on the row counts.
        QTest::mouseClick(header, Qt::LeftButton, {}, {header->width() / 2, 3});
        QVERIFY(screen.advancedEditor() == nullptr);
        QTest::mouseClick(header, Qt::LeftButton, {}, {header->width() - 2, 20});
        QVERIFY(screen.advancedEditor() != nullptr);
        header->setFocus(Qt::TabFocusReason);
        QTest::keyClick(header, Qt::Key_Space);
        QVERIFY(screen.advancedEditor() == nullptr);
    }

    void foldedInstructionsStillCount()
    {
        GenerateScreen screen;
        typeInto(screen.advancedEditor(), u"使用蓝金配色"_s);
        click(screen.find(texts::advancedOptions));
        screen.generate();
        QTRY_COMPARE(screen.server.requestCount(), 1);
        QVERIFY(screen.sentPrompt().contains(u"额外风格指令：使用蓝金配色。"_s));
    }

    void typedBlanksOfEveryKindReachTheService()
    {
        GenerateScreen screen;
        typeInto(screen.advancedEditor(), u"\u00a0左\u00a0右\u3000"_s);
        QTest::keyClick(screen.advancedEditor(), Qt::Key_Return);
        QTest::keyClick(screen.advancedEditor(), Qt::Key_B);
        screen.generate(u" 标\u00a0题 "_s);
        QTRY_COMPARE(screen.server.requestCount(), 1);
        const QString prompt = screen.sentPrompt();
        QVERIFY2(prompt.contains(u"额外风格指令：\u00a0左\u00a0右\u3000\nb。"_s), qPrintable(prompt));
        QVERIFY2(prompt.contains(u"「 标\u00a0题 」"_s), qPrintable(prompt));
    }

    void aTitleOfTenThousandCharactersIsTakenWhole()
    {
        GenerateScreen screen;
        const QString title = u"很长的标题"_s.repeated(2000);
        const int width = screen.view->widget()->width();
        screen.generate(title);
        QTRY_VERIFY(screen.shows(texts::succeeded));
        QVERIFY(screen.sentPrompt().contains(u"「"_s + title + u"」"_s));
        screen.goBack();
        QCOMPARE(screen.titleField()->text(), title);
        QCOMPARE(screen.view->widget()->width(), width);
    }
};

QUILMORA_TEST(GenerateFormTest, runScreenTest)

#include "GenerateFormTest.moc"
