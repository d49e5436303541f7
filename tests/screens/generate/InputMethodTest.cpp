#include "GenerateScreen.h"
#include "screens/common/Sheet.h"
#include "screens/common/TextField.h"
#include "screens/settings/SettingsView.h"
#include "support/ComposingInputMethod.h"

#include <QJsonObject>
#include <QPlainTextEdit>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// A word that is still being composed in a field when a button is pressed.
class InputMethodTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWordGoesIntoTheRequest_data();
    void theWordGoesIntoTheRequest();
    void aComposedTitleIsEnough_data();
    void aComposedTitleIsEnough();
    void whileTheTitleIsComposedTheButtonFollows();
    void aDroppedTitleStartsNothing();
    void theWordIsStoredWithTheSettings();
    void theWordIsKeptWhenTheTabKeyLeavesTheField();
};

namespace
{

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

Q_DECLARE_METATYPE(Press)

void InputMethodTest::theWordGoesIntoTheRequest_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<Press>("press");
    const QString advanced = u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s;
    for (const QString &field : {u"背景场景"_s, advanced}) {
        const QByteArray name = field.left(4).toUtf8();
        QTest::addRow("%s, mouse", name.constData()) << field << Press{pressByMouse};
        QTest::addRow("%s, keyboard", name.constData()) << field << Press{pressByKeyboard};
        QTest::addRow("%s, screen reader", name.constData()) << field << Press{pressByScreenReader};
    }
}

void InputMethodTest::theWordGoesIntoTheRequest()
{
    QFETCH(const QString, field);
    QFETCH(const Press, press);
    GenerateScreen screen;
    ComposingInputMethod inputMethod;
    typeInto(screen.titleField(), u"标题"_s);
    typeInto(accessible::findField(&screen.window, field), u"豪华"_s);
    inputMethod.compose(u"办公室"_s);
    press(screen.generateButton());
    QTRY_COMPARE(screen.server.requestCount(), 1);
    const QString prompt = screen.requestBody().value(u"prompt"_s).toString();
    QVERIFY2(prompt.contains(u"豪华办公室"_s), qPrintable(prompt));
}

void InputMethodTest::aComposedTitleIsEnough_data()
{
    QTest::addColumn<Press>("press");
    QTest::newRow("mouse") << Press{pressByMouse};
    QTest::newRow("keyboard") << Press{pressByKeyboard};
    QTest::newRow("screen reader") << Press{pressByScreenReader};
}

void InputMethodTest::aComposedTitleIsEnough()
{
    QFETCH(const Press, press);
    GenerateScreen screen;
    ComposingInputMethod inputMethod;
    click(screen.titleField());
    inputMethod.compose(u"你好"_s);
    QVERIFY(screen.titleField()->text().isEmpty());
    QVERIFY(screen.generateButton()->isEnabled());
    press(screen.generateButton());
    QTRY_COMPARE(screen.server.requestCount(), 1);
    const QString prompt = screen.requestBody().value(u"prompt"_s).toString();
    QVERIFY2(prompt.contains(u"「你好」"_s), qPrintable(prompt));
}

void InputMethodTest::whileTheTitleIsComposedTheButtonFollows()
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

void InputMethodTest::aDroppedTitleStartsNothing()
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

void InputMethodTest::theWordIsStoredWithTheSettings()
{
    const TemporaryHome home;
    DatabaseManager database{home.path(u"data"_s), home.path(u"covers"_s)};
    QWidget window;
    auto *view = new SettingsView{database, &window};
    view->resize(1000, 640);
    showWindow(window, {1000, 640});
    ComposingInputMethod inputMethod;
    typeInto(accessible::find<QLineEdit>(&window, u"API Key"_s), u"key"_s);
    typeInto(accessible::find<QLineEdit>(&window, u"Model ID"_s), u"model-"_s);
    inputMethod.compose(u"four"_s);
    pressByScreenReader(accessible::find<QAbstractButton>(&window, u"保存设置"_s));
    QTRY_COMPARE(database.getConfig().modelID, u"model-four"_s);
    QTRY_VERIFY(openSheet() != nullptr);
}

void InputMethodTest::theWordIsKeptWhenTheTabKeyLeavesTheField()
{
    GenerateScreen screen;
    ComposingInputMethod inputMethod;
    typeInto(screen.titleField(), u"我靠"_s);
    inputMethod.compose(u"这个"_s);
    QTest::keyClick(screen.titleField(), Qt::Key_Tab);
    QVERIFY(!screen.titleField()->hasFocus());
    QCOMPARE(screen.titleField()->text(), u"我靠这个"_s);
}

int main(int argc, char **argv)
{
    return runScreenTest<InputMethodTest>(argc, argv);
}

#include "InputMethodTest.moc"
