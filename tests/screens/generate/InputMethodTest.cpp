#include "support/GenerateScreen.h"
#include "support/SettingsScreen.h"
#include "ui/widgets/TextField.h"

#include <QInputMethodEvent>
#include <QSignalSpy>
#include <qpa/qplatforminputcontext.h>

#include <private/qinputmethod_p.h>
#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// An input method in place of the system's, as Qt sees one: with it a word is composed in the field that has
/// the focus, underlined, until it is committed.
class ComposingInputMethod final : public QPlatformInputContext
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ComposingInputMethod)

public:
    ComposingInputMethod() { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this; }
    ~ComposingInputMethod() override
    {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
    }

    bool isValid() const override { return true; }

    /// Shows the word, half composed.
    void compose(const QString &word)
    {
        m_composed = word;
        const QInputMethodEvent::Attribute underlined{QInputMethodEvent::TextFormat, 0,
                                                      static_cast<int>(word.size()), QVariant{}};
        QInputMethodEvent event{word, {underlined}};
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }

    void commit() override
    {
        if (!m_composed.isEmpty()) {
            QInputMethodEvent event;
            event.setCommitString(std::exchange(m_composed, {}));
            QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
        }
    }

    /// From then on it knows of no word, as one that has ended: a commit commits nothing.
    void reset() override { m_composed.clear(); }

private:
    QString m_composed;
};

using Press = void (*)(QAbstractButton *);

void pressByMouse(QAbstractButton *button) { click(button); }

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
    void theWordGoesIntoTheRequest()
    {
        for (const QString &field : {texts::title, texts::scene, texts::instructions}) {
            for (const Press press : {pressByMouse, pressByKeyboard, pressByScreenReader}) {
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
        }
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
        inputMethod.reset();
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
