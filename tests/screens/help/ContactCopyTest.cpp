#include "HelpScreen.h"

#include <QClipboard>
#include <QMimeData>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// What a tap on an address of the help screen does.
class ContactCopyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { screen.reset(); }
    void aTapOnTheWebsiteLineCopiesExactlyTheWebsite();
    void aTapOnTheEmailLineCopiesExactlyTheAddress();
    void afterTwoTapsTheSecondValueGoesWithTheFirstTapsEnd();
    void whatWasOnTheClipboardIsGone();
    void thereIsNoToastBeforeATap();
    void theTabKeyVisitsBothLinesAndReturnCopies();
    void theTabMayBeLeftWhileTheToastIsUp();

private:
    void open(const HelpContents &contents)
    {
        screen.reset();
        screen = std::make_unique<HelpScreen>(contents);
    }

    std::unique_ptr<HelpScreen> screen;
};

void ContactCopyTest::init()
{
    QGuiApplication::clipboard()->clear();
    open(HelpScreen::sample());
}

void ContactCopyTest::aTapOnTheWebsiteLineCopiesExactlyTheWebsite()
{
    click(screen->websiteLine());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"quilmora.example/h?a=1&b=2"_s);
    QCOMPARE(screen->toast()->message(), u"已复制：quilmora.example/h?a=1&b=2"_s);
    QVERIFY(screen->toast()->isUp());
}

void ContactCopyTest::aTapOnTheEmailLineCopiesExactlyTheAddress()
{
    click(screen->emailLine());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"someone@quilmora.example"_s);
    QCOMPARE(screen->toast()->message(), u"已复制：someone@quilmora.example"_s);
    QVERIFY(screen->toast()->isUp());
}

void ContactCopyTest::afterTwoTapsTheSecondValueGoesWithTheFirstTapsEnd()
{
    HelpContents contents = HelpScreen::sample();
    contents.toastStay = 60ms;
    open(contents);
    click(screen->emailLine());
    letAMomentPass();
    bool wasUp = true;
    bool secondStayIsOver = false;
    // Due no later than the end of the second tap's own time.
    QTimer::singleShot(contents.toastStay, screen->view(), [&] {
        wasUp = screen->toast()->isUp();
        secondStayIsOver = true;
    });
    click(screen->websiteLine());
    QCOMPARE(screen->toast()->message(), u"已复制：quilmora.example/h?a=1&b=2"_s);
    QTRY_VERIFY(secondStayIsOver);
    QVERIFY(!wasUp);
    QTRY_VERIFY(!screen->toast()->isVisible());
    QCOMPARE(HelpContents::ofThisBuild().toastStay, 1500ms);
}

void ContactCopyTest::whatWasOnTheClipboardIsGone()
{
    auto *former = new QMimeData;
    former->setHtml(u"<b>former</b>"_s);
    former->setImageData(QImage{2, 2, QImage::Format_RGB32});
    former->setUrls({QUrl{u"file:///former"_s}});
    QGuiApplication::clipboard()->setMimeData(former);
    click(screen->emailLine());
    const QMimeData *now = QGuiApplication::clipboard()->mimeData();
    QCOMPARE(now->formats(), QStringList{u"text/plain"_s});
    QCOMPARE(now->data(u"text/plain"_s), QByteArray("someone@quilmora.example"));
}

void ContactCopyTest::thereIsNoToastBeforeATap()
{
    QVERIFY(!screen->toast()->isVisible());
    QCOMPARE(screen->toast()->message(), QString{});
    QCOMPARE(QGuiApplication::clipboard()->text(), QString{});
}

void ContactCopyTest::theTabKeyVisitsBothLinesAndReturnCopies()
{
    const QString email = u"客服邮箱：someone@quilmora.example"_s;
    const QString website = u"服务帮助：quilmora.example/h?a=1&b=2（仅技术支持与使用说明）"_s;
    QCOMPARE(accessible::focusOrder(screen->window()), (QStringList{email, website}));
    screen->emailLine()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"someone@quilmora.example"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(screen->websiteLine()->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"quilmora.example/h?a=1&b=2"_s);
    QVERIFY2(screen->websiteLine()->hasFocus(), "the toast takes no focus");
}

void ContactCopyTest::theTabMayBeLeftWhileTheToastIsUp()
{
    constexpr auto stay = 60ms;
    HelpContents contents = HelpScreen::sample();
    contents.toastStay = stay;
    for (const bool waitForTheStay : {false, true}) {
        open(contents);
        click(screen->emailLine());
        click(screen->websiteLine());
        QTRY_VERIFY(!waitForTheStay || !screen->toast()->isUp());
        bool over = false;
        QTimer::singleShot(stay, this, [&over] { over = true; });
        screen->leave();
        QTRY_VERIFY(over);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"quilmora.example/h?a=1&b=2"_s);
    }
}

int main(int argc, char *argv[])
{
    return runScreenTest<ContactCopyTest>(argc, argv);
}

#include "ContactCopyTest.moc"
