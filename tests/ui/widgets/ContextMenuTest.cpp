#include "screens/generate/MessageView.h"
#include "support/Drawing.h"
#include "support/ScreenTest.h"
#include "ui/widgets/LabeledField.h"
#include "ui/widgets/TextEditor.h"

#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

enum class Kind { field, editor, message };

QWidget *make(Kind kind, QWidget *parent)
{
    switch (kind) {
    case Kind::field:
        return makeTextField(u"名字"_s, u"提示"_s, 13, parent);
    case Kind::editor:
        return new TextEditor{13, parent};
    case Kind::message:
        return new MessageView{u"消息"_s, 13, u"长消息"_s, parent};
    }
    Q_UNREACHABLE();
}

bool isChinese(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar letter) { return letter.script() == QChar::Script_Han; });
}

} // namespace

/// The menus that a right click on a text opens.
class ContextMenuTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCommandIsChinese_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::newRow("one line") << Kind::field;
        QTest::newRow("many lines") << Kind::editor;
        QTest::newRow("message") << Kind::message;
    }

    void everyCommandIsChinese()
    {
        QFETCH(const Kind, kind);
        QWidget window;
        QWidget *const text = make(kind, &window);
        text->resize(300, 80);
        showWindow(window, {400, 200});

        QMenu *const menu = openMenu(text);
        QVERIFY(menu != nullptr);
        int commands = 0;
        for (const QAction *action : menu->actions()) {
            if (!action->isSeparator()) {
                ++commands;
                // Without its key, which follows a tab.
                QVERIFY2(isChinese(action->text().section(u'\t', 0, 0)), qPrintable(action->text()));
                // As a screen reader says it, too.
                QVERIFY2(!action->text().contains(u'&'), qPrintable(action->text()));
            }
        }
        QVERIFY(commands >= 2);
        const Drawing drawing{menu};
        QVERIFY(drawing.texts().size() >= commands);
        for (const DrawnText &drawn : drawing.texts()) {
            QVERIFY2(!drawn.text.contains(u'(') && !drawn.text.contains(u'&'), qPrintable(drawn.text));
            QCOMPARE(drawn.font.pixelSize(), 13);
        }
        menu->close();
    }
};

QUILMORA_TEST(ContextMenuTest, runScreenTest)

#include "ContextMenuTest.moc"
