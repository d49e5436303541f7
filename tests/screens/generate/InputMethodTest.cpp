#include "support/ComposingInputMethod.h"
#include "support/GenerateScreen.h"
#include "support/SettingsScreen.h"
#include "support/TestProgram.h"
#include "ui/widgets/TextField.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

using Press = void (*)(QAbstractButton *);

void pressByMouse(QAbstractButton *button)
{
    click(button);
}

void pressByKeyboard(QAbstractButton *button)
{
    button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button, Qt::Key_Return);
}

/// Without moving the focus.
void pressByScreenReader(QAbstractButton *button)
{
    auto *actions = accessible::interfaceOf(button)->actionInterface();
    actions->doAction(QAccessibleActionInterface::pressAction());
}

} // namespace

/// A word that is still being composed in a field when a button is pressed.
class InputMethodTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWordGoesIntoTheRequest_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<Press>("press");
        for (const QString &field : {texts::title, texts::scene, texts::instructions}) {
            const QByteArray name = field.left(4).toUtf8();
            QTest::addRow("%s, mouse", name.constData()) << field << Press{pressByMouse};
            QTest::addRow("%s, keyboard", name.constData()) << field << Press{pressByKeyboard};
            QTest::addRow("%s, screen reader", name.constData()) << field << Press{pressByScreenReader};
        }
    }

    void theWordGoesIntoTheRequest()
    {
        QFETCH(const QString, field);
        QFETCH(const Press, press);
        GenerateScreen screen;
        ComposingInputMethod inputMethod;
        // A title that is being composed is enough.
        if (field != texts::title) {
            typeInto(screen.titleField(), u"标题"_s);
            typeInto(accessible::findField(&screen.window, field), u"豪华"_s);
        } else {
            click(screen.titleField());
        }
        inputMethod.compose(u"办公室"_s);
        QCOMPARE(screen.titleField()->text().isEmpty(), field == texts::title);
        QVERIFY(screen.generateButton()->isEnabled());
        press(screen.generateButton());
        QTRY_COMPARE(screen.server.requestCount(), 1);
        const QString word = field == texts::title ? u"「办公室」"_s : u"豪华办公室"_s;
        QVERIFY2(screen.sentPrompt().contains(word), qPrintable(screen.sentPrompt()));
    }

    void whileTheTitleIsComposedTheButtonFollows()
    {
        GenerateScreen screen;
        ComposingInputMethod inputMethod;
        typeInto(screen.titleField(), u" \t"_s);
        const auto isEnabled = [&screen] {
            return screen.generateButton()->isEnabled();
        };
        QVERIFY(!isEnabled());
        inputMethod.compose(u"  "_s);
        QVERIFY(!isEnabled());
        inputMethod.compose(u"n"_s);
        QVERIFY(isEnabled());
        inputMethod.compose(u""_s);
        QVERIFY(!isEnabled());

        inputMethod.compose(u"你好"_s);
        auto *title = qobject_cast<TextField *>(screen.titleField());
        QSignalSpy changes{title, &TextField::shownTextChanged};
        // Not even for a moment: it would lose the press that commits.
        connect(title, &TextField::shownTextChanged, this, [&] { QVERIFY(isEnabled()); });
        QGuiApplication::inputMethod()->commit();
        QVERIFY(!changes.isEmpty());
        QCOMPARE(screen.titleField()->text().trimmed(), u"你好"_s);
    }

    void aDroppedTitleStartsNothing()
    {
        GenerateScreen screen;
        ComposingInputMethod inputMethod;
        click(screen.titleField());
        inputMethod.compose(u"你好"_s);
        inputMethod.drop();
        pressByKeyboard(screen.generateButton());
        // Otherwise the progress takes the form's place at once.
        QVERIFY(screen.titleField() != nullptr);
    }

    void theWordIsStoredWithTheSettings()
    {
        SettingsScreen screen;
        ComposingInputMethod inputMethod;
        screen.fill({u"url"_s, u"key"_s, u"model-"_s});
        inputMethod.compose(u"four"_s);
        pressByScreenReader(screen.find<QAbstractButton>(texts::saveSettings));
        QTRY_COMPARE(screen.database.getConfig().modelID, u"model-four"_s);
        QVERIFY(SettingsScreen::closeAlert());
    }

    void theWordIsKeptWhenTheTabKeyLeavesTheField()
    {
        GenerateScreen screen;
        ComposingInputMethod inputMethod;
        typeInto(screen.titleField(), u"我靠"_s);
        inputMethod.compose(u"这个"_s);
        QTest::keyClick(screen.titleField(), Qt::Key_Tab);
        QVERIFY(!screen.titleField()->hasFocus());
        QCOMPARE(screen.titleField()->text(), u"我靠这个"_s);
    }
};

QUILMORA_TEST(InputMethodTest, runScreenTest)

#include "InputMethodTest.moc"
