#include "screens/generate/MessageView.h"

#include "support/AccessibleFinder.h"
#include "support/LaidOutText.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/Texts.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Whether the view is as high as a frame may be, and no line is truncated at its lower edge.
bool showsWholeLines(const MessageView &view)
{
    const int bottom = view.viewport()->height();
    const QRect last = view.cursorRect(view.cursorForPosition({view.width() / 2, bottom - 2}));
    return view.height() <= 320 && view.height() > 320 - last.height() && last.bottom() < bottom;
}

} // namespace

/// The text of an error: its lines, and the widget that shows them.
class MessageViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aShortMessageNeverScrolls()
    {
        const QStringList messages{
            u"请求超时"_s,           u"<h1>&amp; &File</h1><img src=\"file:///etc/hostname\">\n&&"_s,
            u"一\n二\n三\n四\n五"_s, u"连接被远程主机关闭。"_s.repeated(30),
            QString{600, u'x'},      u"响应缺少 data 字段："_s + u"{\"a\":\"b\",\"c\":[1,2]}"_s.repeated(25),
        };
        for (const QString &message : messages) {
            const MessageView *view = show(message);
            QVERIFY(accessible::find<MessageView>(m_window.get(), texts::errorMessage) == view);
            QCOMPARE(view->toPlainText(), message);
            QCOMPARE(view->document()->blockCount(), message.count(u'\n') + 1);
            QCOMPARE(m_window->width(), 600);
            QCOMPARE(view->width(), 600);
            QTRY_COMPARE(view->verticalScrollBar()->maximum(), 0);
            for (QTextBlock block = view->document()->begin(); block.isValid(); block = block.next()) {
                for (int line = 0; line < block.layout()->lineCount(); ++line) {
                    QVERIFY(block.layout()->lineAt(line).naturalTextWidth() <= view->viewport()->width());
                }
            }
        }
    }

    void theHeightFollowsTheWidth()
    {
        const MessageView *view = show(u"连接被远程主机关闭。"_s.repeated(10));
        const int wide = view->height();
        m_window->resize(300, 500);
        QTRY_VERIFY(view->height() > wide);
        QTRY_COMPARE(view->verticalScrollBar()->maximum(), 0);
        QVERIFY(show(u"一"_s)->height() < show(u"一\n二"_s)->height());
    }

    void aLongMessageScrollsInsideAFrame()
    {
        for (const QString &message :
             {u"<p>502 Bad Gateway</p>\n"_s.repeated(2000), QString{u"一行\n"_s.repeated(39) + u"一行"_s}}) {
            MessageView *view = show(message);
            QVERIFY(showsWholeLines(*view));
            QTRY_VERIFY(view->verticalScrollBar()->maximum() > 0);
            QVERIFY(accessible::find<MessageView>(m_window.get(), texts::errorMessage) == view);
            QCOMPARE(view->toPlainText(), message);
            QCOMPARE(screenCapture::colorAt(screenCapture::capture(view), {8, 160}), QColor(Qt::white));
            QTest::keyClick(addField(), Qt::Key_Tab);
            QVERIFY(view->hasFocus());
            QTest::keyClick(view, Qt::Key_PageDown);
            QVERIFY(view->verticalScrollBar()->value() > 0);
            QTest::keyClick(view, Qt::Key_Home);
            QCOMPARE(view->verticalScrollBar()->value(), 0);
        }
    }

    void aShortMessageIsReachedAndReadByKeyboard()
    {
        MessageView *view = show(u"一\n二"_s);
        QLineEdit *other = addField();
        const QImage without = screenCapture::capture(view);
        QTest::keyClick(other, Qt::Key_Tab);
        QVERIFY(view->hasFocus());
        QAccessibleTextInterface *text = accessible::interfaceOf(view)->textInterface();
        QCOMPARE(text->cursorPosition(), 0);
        QTest::keyClick(view, Qt::Key_Down);
        QCOMPARE(text->cursorPosition(), 2);
        QTest::keyClick(view, Qt::Key_Home);
        QCOMPARE(text->cursorPosition(), 0);
        QTest::keyClick(view, Qt::Key_End);
        QCOMPARE(text->cursorPosition(), 3);
        // A ring without a ground.
        const QImage with = screenCapture::capture(view);
        const QPoint edge{0, view->height() / 2};
        QCOMPARE(screenCapture::colorAt(without, edge).alpha(), 0);
        QVERIFY(screenCapture::colorAt(with, edge).alpha() > 200);
        QCOMPARE(screenCapture::colorAt(with, edge + QPoint{8, 0}).alpha(), 0);
        // Nothing can be typed, and the Tab key leaves it.
        QTest::keyClick(view, Qt::Key_A);
        QCOMPARE(view->toPlainText(), u"一\n二"_s);
        QTest::keyClick(view, Qt::Key_Tab);
        QVERIFY(!view->hasFocus());
    }

    void linesStandInTheMiddle()
    {
        MessageView *view = show(u"一"_s);
        view->clearFocus();
        const QImage shown = screenCapture::capture(view);
        const auto ink = [&](QRect area) {
            return area.width() * area.height() - screenCapture::countOf(shown, Qt::transparent, area, 0);
        };
        QVERIFY(ink({290, 0, 20, shown.height()}) > 5);
        QCOMPARE(ink({0, 0, 280, shown.height()}), 0);
        QCOMPARE(ink({320, 0, 280, shown.height()}), 0);
    }

    void theKeyboardCopiesThePartThatIsSelected()
    {
        const QString message = u"一\u00a0二\r\n三\u3000四"_s + QString{5000, u'x'};
        MessageView *view = show(message);
        click(view->viewport());
        QTest::keySequence(view, QKeySequence{QKeySequence::SelectAll});
        QTest::keySequence(view, QKeySequence{QKeySequence::Copy});
        QCOMPARE(QGuiApplication::clipboard()->text(), message);
        QTextCursor part = view->textCursor();
        part.setPosition(2);
        part.setPosition(6, QTextCursor::KeepAnchor);
        view->setTextCursor(part);
        view->copy();
        QCOMPARE(QGuiApplication::clipboard()->text(), u"二\r\n三\u3000"_s);
    }

    void aMessageOfAMillionLineBreaksIsLaidOutBitByBit()
    {
        const QString message = u"\n"_s.repeated(1000000);
        const MessageView *view = show(message);
        m_window->repaint();
        QCOMPARE(view->toPlainText(), message);
        QVERIFY(view->document()->blockCount() <= 20001);
        QVERIFY(laidOutCharacters(*view->document()) > 0);
        QVERIFY(laidOutCharacters(*view->document()) < 10000);
        const MessageLines lines{message};
        QVERIFY(lines.shown().count(u'\n') <= 20001);
        QCOMPARE(lines.shown().size(), message.size());
        QCOMPARE(lines.originalBetween(0, message.size()), message);
    }

    void ordinaryTextsAreShownAsTheyAre()
    {
        for (const QString &text :
             {QString{}, u"请求超时"_s, u"a\n\nb\n"_s, u"<b>&amp;</b> & \u00a0"_s, QString{2000, u'x'}}) {
            const MessageLines lines{text};
            QCOMPARE(lines.shown(), text);
            QCOMPARE(lines.originalBetween(0, text.size()), text);
        }
    }

    void everyBreakIsOneLineFeedAndComesBackAsItWas()
    {
        const QString text = u"a\r\nb\rc\nd\u2029e\r\n\r\nf"_s;
        const MessageLines lines{text};
        QCOMPARE(lines.shown(), u"a\nb\nc\nd\ne\n\nf"_s);
        QCOMPARE(lines.originalBetween(0, lines.shown().size()), text);
        QCOMPARE(lines.originalBetween(0, 2), u"a\r\n"_s);
        QCOMPARE(lines.originalBetween(2, 3), u"b"_s);
        QCOMPARE(lines.originalBetween(9, 12), u"\r\n\r\nf"_s);
    }

    void longLinesAreBrokenAtBlanksOrBetweenCharacters()
    {
        // A family of seven code points, eleven units long.
        const QString family = u"👨‍👩‍👧‍👦"_s;
        for (const QString &part : {u"word and "_s, family}) {
            const QString text = part.repeated(part == family ? 1000 : 3000);
            const MessageLines lines{text};
            const QStringList pieces = lines.shown().split(u'\n');
            QVERIFY(pieces.size() > 4);
            for (const QString &piece : pieces) {
                QVERIFY(piece.size() <= 2000);
                QVERIFY2(part == family ? piece.size() % family.size() == 0
                                        : piece.isEmpty() || piece.endsWith(u' '),
                         qPrintable(piece.right(20)));
            }
            QCOMPARE(lines.originalBetween(0, lines.shown().size()), text);
        }
    }

    void everyPartComesBackToTheCharacter()
    {
        QString text;
        for (int i = 0; text.size() < 30000; ++i) {
            text += QString::number(i) + (i % 700 == 0 ? u"\r\n"_s : u","_s);
        }
        const MessageLines lines{text};
        const QString &shown = lines.shown();
        QVERIFY(shown.count(u'\n') > text.count(u"\r\n"_s));
        // Divided anywhere, the parts make the whole, without the breaks that were added.
        for (qsizetype place = 0; place <= shown.size(); place += 37) {
            QCOMPARE(lines.originalBetween(0, place) + lines.originalBetween(place, shown.size()), text);
        }
    }

private:
    MessageView *show(const QString &message, QSize size = {600, 500})
    {
        m_window = std::make_unique<QWidget>();
        auto *column = new QVBoxLayout{m_window.get()};
        column->setContentsMargins(0, 0, 0, 0);
        auto *view = new MessageView{message, 13, texts::errorMessage, m_window.get()};
        column->addWidget(view);
        column->addStretch();
        showWindow(*m_window, size);
        return view;
    }

    /// Another widget, with the focus.
    QLineEdit *addField()
    {
        auto *field = new QLineEdit{m_window.get()};
        field->show();
        field->setFocus();
        return field;
    }

    std::unique_ptr<QWidget> m_window;
};

QUILMORA_TEST(MessageViewTest, runScreenTest)
#include "MessageViewTest.moc"
