#include "screens/help/HelpView.h"

#include "screens/common/LogoView.h"
#include "screens/common/Symbol.h"
#include "screens/common/TextLabel.h"
#include "screens/help/ContactLine.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QMimeData>
#include <QPaintEvent>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using std::chrono_literals::operator""h;
using std::chrono_literals::operator""ms;

class HelpViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void withoutAnyLogoThePageShowsTheSymbolIn96By96();
    void aTapOnTheWebsiteLineCopiesExactlyTheWebsite();
    void aTapOnTheEmailLineCopiesExactlyTheAddress();
    void afterTwoTapsTheSecondValueGoesWithTheFirstTapsEnd();
    void whatWasOnTheClipboardIsGone();
    void theTextsReadAsAgreed();
    void thePageSaysWhatTheBuildWasGiven();
    void theFontsAndColoursAreTheAgreedOnes();
    void theLogoHasItsSizeAndRoundCorners();
    void theContentIsCentredWithEvenSpaces_data();
    void theContentIsCentredWithEvenSpaces();
    void theToastLiesAboveTheBottomAlsoAfterAResize();
    void thereIsNoToastBeforeATap();
    void theTabKeyVisitsBothLinesAndReturnCopies();
    void theFocusRingShowsOnlyAfterTheTabKey();
    void theFocusRingIsPaintedAtOnce();
    void theTabMayBeLeftWhileTheToastIsUp();
    void aVeryLongWebsiteIsReadableAsAWhole();

private:
    void show(const HelpContents &contents, QSize size = {1000, 643});
    HelpContents sample() const;
    ContactLine *emailLine() { return line(u"客服邮箱：someone@quilmora.example"_s); }
    ContactLine *websiteLine()
    {
        return line(u"服务帮助：quilmora.example/h?a=1&b=2（仅技术支持与使用说明）"_s);
    }
    ContactLine *line(const QString &text) { return accessible::find<ContactLine>(window.get(), text); }
    Toast *toast() { return view->findChild<Toast *>(); }
    TextLabel *label(const QString &text) { return accessible::find<TextLabel>(window.get(), text); }

    std::unique_ptr<QWidget> window;
    QPointer<HelpView> view;
};

namespace
{

/// Lets the clock go on without letting any event come.
void letAMomentPass()
{
    QElapsedTimer clock;
    clock.start();
    while (clock.nsecsElapsed() < 3'000'000) {
    }
}

/// Which parts of a widget are painted anew.
class PaintedArea final : public QObject
{
public:
    explicit PaintedArea(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            area += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
    QRegion area;
};

QRect placeIn(const QWidget *page, const QWidget *widget)
{
    return {widget->mapTo(page, QPoint{}), widget->size()};
}

} // namespace

HelpContents HelpViewTest::sample() const
{
    return {.version = u"1.0.0"_s,
            .email = u"someone@quilmora.example"_s,
            .website = u"quilmora.example/h?a=1&b=2"_s,
            .toastStay = 1h};
}

void HelpViewTest::init()
{
    QGuiApplication::clipboard()->clear();
    show(sample());
}

void HelpViewTest::show(const HelpContents &contents, QSize size)
{
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    column->setContentsMargins({});
    view = new HelpView{contents, window.get()};
    column->addWidget(view);
    showWindow(*window, size);
}

void HelpViewTest::withoutAnyLogoThePageShowsTheSymbolIn96By96()
{
    HelpContents contents = sample();
    contents.logo = {{u"/nowhere"_s}, u":/nothing.png"_s};
    show(contents);
    auto *logo = accessible::find<LogoView>(window.get(), u"Quilmora"_s);
    QCOMPARE(logo->size(), QSize(96, 96));
    const QImage symbol =
        Symbol::pixmap(u"sparkles.rectangle.stack.fill"_s, 96, themeColor(ColorRole::primaryText), 1.0)
            .toImage()
            .convertToFormat(QImage::Format_ARGB32);
    QVERIFY(screenCapture::countOf(symbol, Qt::transparent) < 96 * 96 / 2);
    QCOMPARE(screenCapture::capture(logo), symbol);
}

void HelpViewTest::aTapOnTheWebsiteLineCopiesExactlyTheWebsite()
{
    click(websiteLine());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"quilmora.example/h?a=1&b=2"_s);
    QCOMPARE(toast()->message(), u"已复制：quilmora.example/h?a=1&b=2"_s);
    QVERIFY(toast()->isUp());
}

void HelpViewTest::aTapOnTheEmailLineCopiesExactlyTheAddress()
{
    click(emailLine());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"someone@quilmora.example"_s);
    QCOMPARE(toast()->message(), u"已复制：someone@quilmora.example"_s);
    QVERIFY(toast()->isUp());
}

void HelpViewTest::afterTwoTapsTheSecondValueGoesWithTheFirstTapsEnd()
{
    HelpContents contents = sample();
    contents.toastStay = 60ms;
    show(contents);
    click(emailLine());
    letAMomentPass();
    bool wasUp = true;
    bool secondStayIsOver = false;
    // Due no later than the end of the second tap's own time.
    QTimer::singleShot(contents.toastStay, view, [&] {
        wasUp = toast()->isUp();
        secondStayIsOver = true;
    });
    click(websiteLine());
    QCOMPARE(toast()->message(), u"已复制：quilmora.example/h?a=1&b=2"_s);
    QTRY_VERIFY(secondStayIsOver);
    QVERIFY(!wasUp);
    QTRY_VERIFY(!toast()->isVisible());
    QCOMPARE(HelpContents::ofThisBuild().toastStay, 1500ms);
}

void HelpViewTest::whatWasOnTheClipboardIsGone()
{
    auto *former = new QMimeData;
    former->setHtml(u"<b>former</b>"_s);
    former->setImageData(QImage{2, 2, QImage::Format_RGB32});
    former->setUrls({QUrl{u"file:///former"_s}});
    QGuiApplication::clipboard()->setMimeData(former);
    click(emailLine());
    const QMimeData *now = QGuiApplication::clipboard()->mimeData();
    QCOMPARE(now->formats(), QStringList{u"text/plain"_s});
    QCOMPARE(now->data(u"text/plain"_s), QByteArray("someone@quilmora.example"));
}

void HelpViewTest::theTextsReadAsAgreed()
{
    QCOMPARE(accessible::names(window.get()),
             (QStringList{u"Quilmora"_s, u"Quilmora"_s, u"版本号：1.0.0"_s,
                          u"客服邮箱：someone@quilmora.example"_s,
                          u"服务帮助：quilmora.example/h?a=1&b=2（仅技术支持与使用说明）"_s}));
}

void HelpViewTest::thePageSaysWhatTheBuildWasGiven()
{
    show(HelpContents::ofThisBuild());
    const QString email = QString::fromUtf8(SUPPORT_EMAIL);
    const QString website = QString::fromUtf8(WEBSITE);
    QVERIFY(label(u"版本号："_s + QString::fromUtf8(PROGRAM_VERSION)) != nullptr);
    QVERIFY(line(u"客服邮箱："_s + email) != nullptr);
    QVERIFY(line(u"服务帮助："_s + website + u"（仅技术支持与使用说明）"_s) != nullptr);
    click(line(u"客服邮箱："_s + email));
    QCOMPARE(QGuiApplication::clipboard()->text(), email);
}

void HelpViewTest::theFontsAndColoursAreTheAgreedOnes()
{
    const TextLabel *name = label(u"Quilmora"_s);
    QCOMPARE(name->font().pixelSize(), 18);
    QCOMPARE(name->font().weight(), QFont::DemiBold);
    QCOMPARE(name->palette().color(QPalette::WindowText), themeColor(ColorRole::primaryText));
    const TextLabel *version = label(u"版本号：1.0.0"_s);
    QCOMPARE(version->font().pixelSize(), 13);
    QCOMPARE(version->font().weight(), QFont::Normal);
    QCOMPARE(version->palette().color(QPalette::WindowText), themeColor(ColorRole::secondaryText));
    for (const ContactLine *contact : {emailLine(), websiteLine()}) {
        QCOMPARE(contact->font().pixelSize(), 13);
        QCOMPARE(contact->font().weight(), QFont::Normal);
        // As high as the label of the same font.
        QCOMPARE(contact->height(), version->height());
    }
}

void HelpViewTest::theLogoHasItsSizeAndRoundCorners()
{
    auto *logo = accessible::find<LogoView>(window.get(), u"Quilmora"_s);
    QCOMPARE(logo->size(), QSize(96, 96));
    const QImage shown = screenCapture::capture(logo);
    // A circle of radius 20 crosses the corner's diagonal 5.9 from the edges.
    QCOMPARE(screenCapture::colorAt(shown, {4, 4}).alpha(), 0);
    QCOMPARE(screenCapture::colorAt(shown, {7, 7}).alpha(), 255);
    QCOMPARE(screenCapture::colorAt(shown, {48, 0}).alpha(), 255);
}

void HelpViewTest::theContentIsCentredWithEvenSpaces_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("smallest window") << QSize{1000, 643};
    QTest::newRow("large window") << QSize{1600, 943};
}

void HelpViewTest::theContentIsCentredWithEvenSpaces()
{
    QFETCH(const QSize, size);
    window->resize(size);
    QTRY_COMPARE(view->size(), size);
    const QList<QWidget *> items{accessible::find<LogoView>(window.get(), u"Quilmora"_s),
                                 label(u"Quilmora"_s), label(u"版本号：1.0.0"_s), emailLine(), websiteLine()};
    for (const QWidget *item : items) {
        const QRect place = placeIn(view, item);
        QVERIFY(std::abs(2 * place.x() + place.width() - size.width()) <= 1);
        QCOMPARE(place.size(), item->sizeHint());
    }
    for (int i = 1; i < items.size(); ++i) {
        const QRect above = placeIn(view, items.at(i - 1));
        QCOMPARE(placeIn(view, items.at(i)).y() - above.y() - above.height(), 16);
    }
    const int top = placeIn(view, items.constFirst()).y();
    const QRect last = placeIn(view, items.constLast());
    QVERIFY(std::abs(top - (size.height() - last.y() - last.height())) <= 1);
}

void HelpViewTest::theToastLiesAboveTheBottomAlsoAfterAResize()
{
    click(emailLine());
    for (const QSize size : {QSize{1600, 943}, QSize{1000, 643}}) {
        window->resize(size);
        QTRY_COMPARE(view->size(), size);
        const QRect place = toast()->geometry();
        QCOMPARE(place.y() + place.height(), size.height() - 60);
        QVERIFY(std::abs(2 * place.x() + place.width() - size.width()) <= 1);
        QVERIFY(place.y() > placeIn(view, websiteLine()).bottom());
    }
}

void HelpViewTest::thereIsNoToastBeforeATap()
{
    QVERIFY(!toast()->isVisible());
    QCOMPARE(toast()->message(), QString{});
    QCOMPARE(QGuiApplication::clipboard()->text(), QString{});
}

void HelpViewTest::theTabKeyVisitsBothLinesAndReturnCopies()
{
    const QString email = u"客服邮箱：someone@quilmora.example"_s;
    const QString website = u"服务帮助：quilmora.example/h?a=1&b=2（仅技术支持与使用说明）"_s;
    QCOMPARE(accessible::focusOrder(window.get()), (QStringList{email, website}));
    emailLine()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"someone@quilmora.example"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(websiteLine()->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"quilmora.example/h?a=1&b=2"_s);
    QVERIFY2(websiteLine()->hasFocus(), "the toast takes no focus");
}

void HelpViewTest::theFocusRingShowsOnlyAfterTheTabKey()
{
    const auto ringPixels = [this](QWidget *around) {
        const QColor accent = themeColor(ColorRole::accent);
        const QColor ring{accent.red(), accent.green(), accent.blue(), 140}; // 55 %
        const QRect area = placeIn(view, around).adjusted(-10, -8, 10, 8);
        return screenCapture::countOf(screenCapture::capture(view), ring, area, 3);
    };
    QCOMPARE(ringPixels(emailLine()), 0);
    click(emailLine());
    QCOMPARE(ringPixels(emailLine()), 0);
    emailLine()->setFocus(Qt::OtherFocusReason);
    QTest::keyClick(emailLine(), Qt::Key_Tab);
    QVERIFY(ringPixels(websiteLine()) > websiteLine()->width());
    QCOMPARE(ringPixels(emailLine()), 0);
    // It lies around the text, not on it.
    const QImage inside = screenCapture::capture(view).copy(placeIn(view, websiteLine()));
    const QColor accent = themeColor(ColorRole::accent);
    QCOMPARE(screenCapture::countOf(inside, {accent.red(), accent.green(), accent.blue(), 140}, {}, 20), 0);
    websiteLine()->clearFocus();
    QCOMPARE(ringPixels(websiteLine()), 0);
}

void HelpViewTest::theFocusRingIsPaintedAtOnce()
{
    // The window has drawn itself before.
    const PaintedArea first{view};
    view->update();
    QTRY_VERIFY(!first.area.isEmpty());
    for (const bool comes : {true, false}) {
        const PaintedArea painted{view};
        if (comes) {
            websiteLine()->setFocus(Qt::TabFocusReason);
        } else {
            websiteLine()->clearFocus();
        }
        const QRect ring = placeIn(view, websiteLine()).adjusted(-5, -5, 5, 5);
        QTRY_VERIFY(painted.area.intersected(ring) == QRegion{ring});
    }
}

void HelpViewTest::theTabMayBeLeftWhileTheToastIsUp()
{
    constexpr auto stay = 60ms;
    HelpContents contents = sample();
    contents.toastStay = stay;
    for (const bool waitForTheStay : {false, true}) {
        show(contents);
        click(emailLine());
        click(websiteLine());
        QTRY_VERIFY(!waitForTheStay || !toast()->isUp());
        bool over = false;
        QTimer::singleShot(stay, this, [&over] { over = true; });
        delete view;
        QTRY_VERIFY(over);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"quilmora.example/h?a=1&b=2"_s);
    }
}

void HelpViewTest::aVeryLongWebsiteIsReadableAsAWhole()
{
    HelpContents contents = sample();
    contents.website = u"https://quilmora.example/"_s + QString{175, u'w'};
    QCOMPARE(contents.website.size(), 200);
    show(contents);
    ContactLine *website = line(u"服务帮助："_s + contents.website + u"（仅技术支持与使用说明）"_s);
    QCOMPARE(window->size(), QSize(1000, 643));
    const QRect place = placeIn(view, website);
    QVERIFY(view->rect().adjusted(20, 20, -20, -20).contains(place));
    QVERIFY(place.height() >= 2 * emailLine()->height());
    QCOMPARE(website->height(), website->heightForWidth(website->width()));
    QCOMPARE(place.y() - emailLine()->geometry().bottom() - 1, 16);
    click(website);
    QCOMPARE(QGuiApplication::clipboard()->text(), contents.website);
    QVERIFY(view->rect().contains(toast()->geometry()));
    QVERIFY(!toast()->geometry().intersects(place));
}

int main(int argc, char *argv[])
{
    return runScreenTest<HelpViewTest>(argc, argv);
}

#include "HelpViewTest.moc"
