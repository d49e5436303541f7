#include "screens/common/MessageView.h"

#include "support/AccessibleFinder.h"
#include "support/LaidOutText.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

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

namespace
{

/// Whether the view is as high as a frame may be, and no line is cut at its lower edge.
bool showsWholeLines(const MessageView &view)
{
    const int bottom = view.viewport()->height();
    const QRect last = view.cursorRect(view.cursorForPosition({view.width() / 2, bottom - 2}));
    return view.height() <= 320 && view.height() > 320 - last.height() && last.bottom() < bottom;
}

} // namespace

class MessageViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aShortMessageNeverScrolls_data();
    void aShortMessageNeverScrolls();
    void theHeightFollowsTheWidth();
    void aLongMessageScrollsInsideAFrame();
    void manyShortLinesScrollByKeyboard();
    void aShortMessageIsReachedAndReadByKeyboard();
    void linesStandInTheMiddle();
    void markupAndAmpersandsAreText();
    void theKeyboardCopiesThePartThatIsSelected();
    void nothingCanBeTyped();
    void aMessageOfAMillionLineBreaksIsLaidOutBitByBit();

private:
    MessageView *show(const QString &message, QSize size = {600, 500});

    std::unique_ptr<QWidget> window;
};

MessageView *MessageViewTest::show(const QString &message, QSize size)
{
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    column->setContentsMargins(0, 0, 0, 0);
    auto *view = new MessageView{message, 13, u"错误信息"_s, window.get()};
    column->addWidget(view);
    column->addStretch();
    showWindow(*window, size);
    return view;
}

void MessageViewTest::aShortMessageNeverScrolls_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("one line") << u"请求超时"_s;
    QTest::newRow("several lines") << u"一\n二\n三\n四\n五"_s;
    QTest::newRow("a wrapping sentence") << u"连接被远程主机关闭。"_s.repeated(30);
    QTest::newRow("one word of 600 letters") << QString{600, u'x'};
    QTest::newRow("compact JSON") << u"响应缺少 data 字段："_s + u"{\"a\":\"b\",\"c\":[1,2]}"_s.repeated(25);
}

void MessageViewTest::aShortMessageNeverScrolls()
{
    QFETCH(const QString, message);
    const MessageView *view = show(message);
    QVERIFY(accessible::find<MessageView>(window.get(), u"错误信息"_s) == view);
    QCOMPARE(view->toPlainText(), message);
    QCOMPARE(window->width(), 600);
    QCOMPARE(view->width(), 600);
    QTRY_COMPARE(view->verticalScrollBar()->maximum(), 0);
    for (QTextBlock block = view->document()->begin(); block.isValid(); block = block.next()) {
        for (int line = 0; line < block.layout()->lineCount(); ++line) {
            QVERIFY(block.layout()->lineAt(line).naturalTextWidth() <= view->viewport()->width());
        }
    }
}

void MessageViewTest::theHeightFollowsTheWidth()
{
    const MessageView *view = show(u"连接被远程主机关闭。"_s.repeated(10));
    const int wide = view->height();
    window->resize(300, 500);
    QTRY_VERIFY(view->height() > wide);
    QTRY_COMPARE(view->verticalScrollBar()->maximum(), 0);
    QCOMPARE(show(u"一"_s)->height() < show(u"一\n二"_s)->height(), true);
}

void MessageViewTest::aLongMessageScrollsInsideAFrame()
{
    const QString message = u"<p>502 Bad Gateway</p>\n"_s.repeated(2000);
    MessageView *view = show(message);
    QVERIFY(showsWholeLines(*view));
    QTRY_VERIFY(view->verticalScrollBar()->maximum() > 1000);
    QVERIFY(accessible::find<MessageView>(window.get(), u"错误信息"_s) == view);
    QCOMPARE(view->toPlainText(), message);
    QCOMPARE(screenCapture::colorAt(screenCapture::capture(view), {8, 160}), QColor(Qt::white));
    // The keyboard can scroll it.
    view->setFocus(Qt::TabFocusReason);
    QTest::keyClick(view, Qt::Key_PageDown);
    QVERIFY(view->verticalScrollBar()->value() > 0);
}

void MessageViewTest::manyShortLinesScrollByKeyboard()
{
    const QString message = u"一行\n"_s.repeated(39) + u"一行"_s;
    MessageView *view = show(message);
    QVERIFY(showsWholeLines(*view));
    QTRY_VERIFY(view->verticalScrollBar()->maximum() > 0);
    auto *other = new QLineEdit{window.get()};
    other->show();
    other->setFocus();
    QTest::keyClick(other, Qt::Key_Tab);
    QVERIFY(view->hasFocus());
    QTest::keyClick(view, Qt::Key_PageDown);
    QVERIFY(view->verticalScrollBar()->value() > 0);
    QTest::keyClick(view, Qt::Key_Home);
    QCOMPARE(view->verticalScrollBar()->value(), 0);
}

void MessageViewTest::aShortMessageIsReachedAndReadByKeyboard()
{
    MessageView *view = show(u"一\n二"_s);
    auto *other = new QLineEdit{window.get()};
    other->show();
    other->setFocus();
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
    // The Tab key leaves it.
    QTest::keyClick(view, Qt::Key_Tab);
    QVERIFY(!view->hasFocus());
}

void MessageViewTest::linesStandInTheMiddle()
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

void MessageViewTest::markupAndAmpersandsAreText()
{
    const QString message = u"<h1>&amp; &File</h1><img src=\"file:///etc/hostname\">\n&&"_s;
    const MessageView *view = show(message);
    QCOMPARE(view->toPlainText(), message);
    QCOMPARE(view->document()->blockCount(), 2);
}

void MessageViewTest::theKeyboardCopiesThePartThatIsSelected()
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

void MessageViewTest::nothingCanBeTyped()
{
    MessageView *view = show(u"一"_s);
    view->setFocus();
    QTest::keyClick(view, Qt::Key_A);
    QCOMPARE(view->toPlainText(), u"一"_s);
}

void MessageViewTest::aMessageOfAMillionLineBreaksIsLaidOutBitByBit()
{
    const QString message = u"\n"_s.repeated(1000000);
    const MessageView *view = show(message);
    window->repaint();
    QCOMPARE(view->toPlainText(), message);
    QVERIFY(view->document()->blockCount() <= 20001);
    QVERIFY(laidOutCharacters(*view->document()) > 0);
    QVERIFY(laidOutCharacters(*view->document()) < 10000);
}

int main(int argc, char *argv[])
{
    return runScreenTest<MessageViewTest>(argc, argv);
}

#include "MessageViewTest.moc"
