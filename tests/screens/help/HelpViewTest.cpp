#include "HelpScreen.h"
#include "screens/common/LogoView.h"
#include "screens/common/Symbol.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/ScreenCapture.h"

#include <QClipboard>
#include <QPaintEvent>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// How the help screen looks.
class HelpViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { screen.reset(); }
    void withoutAnyLogoThePageShowsTheSymbolIn96By96();
    void theTextsComeInTheirOrder();
    void thePageSaysWhatTheBuildWasGiven();
    void everyTextHasItsFontAndColour();
    void theLogoHasItsSizeAndRoundCorners();
    void theContentIsCentredWithEvenSpaces_data();
    void theContentIsCentredWithEvenSpaces();
    void theToastLiesAboveTheBottomAlsoAfterAResize();
    void theFocusRingShowsOnlyAfterTheTabKey();
    void theFocusRingIsPaintedAtOnce();
    void aVeryLongWebsiteIsReadableAsAWhole();

private:
    void open(const HelpContents &contents)
    {
        screen.reset();
        screen = std::make_unique<HelpScreen>(contents);
    }

    std::unique_ptr<HelpScreen> screen;
};

namespace
{

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

void HelpViewTest::init()
{
    open(HelpScreen::sample());
}

void HelpViewTest::withoutAnyLogoThePageShowsTheSymbolIn96By96()
{
    HelpContents contents = HelpScreen::sample();
    contents.logo = {{u"/nowhere"_s}, u":/nothing.png"_s};
    open(contents);
    auto *logo = accessible::find<LogoView>(screen->window(), u"Quilmora"_s);
    QCOMPARE(logo->size(), QSize(96, 96));
    const QImage symbol =
        Symbol::pixmap(u"sparkles.rectangle.stack.fill"_s, 96, themeColor(ColorRole::primaryText), 1.0)
            .toImage()
            .convertToFormat(QImage::Format_ARGB32);
    QVERIFY(screenCapture::countOf(symbol, Qt::transparent) < 96 * 96 / 2);
    QCOMPARE(screenCapture::capture(logo), symbol);
}

void HelpViewTest::theTextsComeInTheirOrder()
{
    QCOMPARE(accessible::names(screen->window()),
             (QStringList{u"Quilmora"_s, u"Quilmora"_s, u"版本号：1.0.0"_s,
                          u"客服邮箱：someone@quilmora.example"_s,
                          u"服务帮助：quilmora.example/h?a=1&b=2（仅技术支持与使用说明）"_s}));
}

void HelpViewTest::thePageSaysWhatTheBuildWasGiven()
{
    open(HelpContents::ofThisBuild());
    const QString email = QString::fromUtf8(SUPPORT_EMAIL);
    const QString website = QString::fromUtf8(WEBSITE);
    QVERIFY(screen->label(u"版本号："_s + QString::fromUtf8(PROGRAM_VERSION)) != nullptr);
    QVERIFY(screen->line(u"客服邮箱："_s + email) != nullptr);
    QVERIFY(screen->line(u"服务帮助："_s + website + u"（仅技术支持与使用说明）"_s) != nullptr);
    click(screen->line(u"客服邮箱："_s + email));
    QCOMPARE(QGuiApplication::clipboard()->text(), email);
}

void HelpViewTest::everyTextHasItsFontAndColour()
{
    const Drawing drawn{screen->view()};
    const QColor primary = themeColor(ColorRole::primaryText);
    QCOMPARE(drawn.lookOf(u"Quilmora"_s), Drawing::look(18, QFont::DemiBold, primary));
    QCOMPARE(drawn.lookOf(u"版本号：1.0.0"_s),
             Drawing::look(13, QFont::Normal, themeColor(ColorRole::secondaryText)));
    for (ContactLine *contact : {screen->emailLine(), screen->websiteLine()}) {
        const QString text = accessible::interfaceOf(contact)->text(QAccessible::Name);
        QCOMPARE(drawn.lookOf(text), Drawing::look(13, QFont::Normal, primary));
        // As high as the label of the same font.
        QCOMPARE(contact->height(), screen->label(u"版本号：1.0.0"_s)->height());
    }
}

void HelpViewTest::theLogoHasItsSizeAndRoundCorners()
{
    auto *logo = accessible::find<LogoView>(screen->window(), u"Quilmora"_s);
    QCOMPARE(logo->size(), QSize(96, 96));
    const QImage picture = Drawing{logo}.pixmaps().constFirst().pixmap.toImage();
    QCOMPARE(picture.size(), QSize(96, 96));
    QCOMPARE(CornerShape{picture.copy(0, 0, 48, 96)}.differenceFromCircle(20), QString{});
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
    screen->window()->resize(size);
    QTRY_COMPARE(screen->view()->size(), size);
    const QList<QWidget *> items{accessible::find<LogoView>(screen->window(), u"Quilmora"_s),
                                 screen->label(u"Quilmora"_s), screen->label(u"版本号：1.0.0"_s),
                                 screen->emailLine(), screen->websiteLine()};
    for (const QWidget *item : items) {
        const QRect place = placeIn(screen->view(), item);
        QVERIFY(std::abs(2 * place.x() + place.width() - size.width()) <= 1);
        QCOMPARE(place.size(), item->sizeHint());
    }
    for (int i = 1; i < items.size(); ++i) {
        const QRect above = placeIn(screen->view(), items.at(i - 1));
        QCOMPARE(placeIn(screen->view(), items.at(i)).y() - above.y() - above.height(), 16);
    }
    const int top = placeIn(screen->view(), items.constFirst()).y();
    const QRect last = placeIn(screen->view(), items.constLast());
    QVERIFY(std::abs(top - (size.height() - last.y() - last.height())) <= 1);
}

void HelpViewTest::theToastLiesAboveTheBottomAlsoAfterAResize()
{
    click(screen->emailLine());
    for (const QSize size : {QSize{1600, 943}, QSize{1000, 643}}) {
        screen->window()->resize(size);
        QTRY_COMPARE(screen->view()->size(), size);
        const QRect place = screen->toast()->geometry();
        QCOMPARE(place.y() + place.height(), size.height() - 60);
        QVERIFY(std::abs(2 * place.x() + place.width() - size.width()) <= 1);
        QVERIFY(place.y() > placeIn(screen->view(), screen->websiteLine()).bottom());
    }
}

void HelpViewTest::theFocusRingShowsOnlyAfterTheTabKey()
{
    const auto ringPixels = [this](QWidget *around) {
        const QColor accent = themeColor(ColorRole::accent);
        const QColor ring{accent.red(), accent.green(), accent.blue(), 230}; // 90 %
        const QRect area = placeIn(screen->view(), around).adjusted(-10, -8, 10, 8);
        return screenCapture::countOf(screenCapture::capture(screen->view()), ring, area, 3);
    };
    QCOMPARE(ringPixels(screen->emailLine()), 0);
    click(screen->emailLine());
    QCOMPARE(ringPixels(screen->emailLine()), 0);
    screen->emailLine()->setFocus(Qt::OtherFocusReason);
    QTest::keyClick(screen->emailLine(), Qt::Key_Tab);
    QVERIFY(ringPixels(screen->websiteLine()) > screen->websiteLine()->width());
    QCOMPARE(ringPixels(screen->emailLine()), 0);
    // It lies around the text, not on it.
    const QImage inside =
        screenCapture::capture(screen->view()).copy(placeIn(screen->view(), screen->websiteLine()));
    const QColor accent = themeColor(ColorRole::accent);
    QCOMPARE(screenCapture::countOf(inside, {accent.red(), accent.green(), accent.blue(), 230}, {}, 20), 0);
    screen->websiteLine()->clearFocus();
    QCOMPARE(ringPixels(screen->websiteLine()), 0);
}

void HelpViewTest::theFocusRingIsPaintedAtOnce()
{
    // The window has drawn itself before.
    const PaintedArea first{screen->view()};
    screen->view()->update();
    QTRY_VERIFY(!first.area.isEmpty());
    for (const bool comes : {true, false}) {
        const PaintedArea painted{screen->view()};
        if (comes) {
            screen->websiteLine()->setFocus(Qt::TabFocusReason);
        } else {
            screen->websiteLine()->clearFocus();
        }
        const QRect ring = placeIn(screen->view(), screen->websiteLine()).adjusted(-5, -5, 5, 5);
        QTRY_VERIFY(painted.area.intersected(ring) == QRegion{ring});
    }
}

void HelpViewTest::aVeryLongWebsiteIsReadableAsAWhole()
{
    HelpContents contents = HelpScreen::sample();
    contents.website = u"https://quilmora.example/"_s + QString{175, u'w'};
    QCOMPARE(contents.website.size(), 200);
    open(contents);
    ContactLine *website = screen->line(u"服务帮助："_s + contents.website + u"（仅技术支持与使用说明）"_s);
    QCOMPARE(screen->window()->size(), QSize(1000, 643));
    const QRect place = placeIn(screen->view(), website);
    QVERIFY(screen->view()->rect().adjusted(20, 20, -20, -20).contains(place));
    QVERIFY(place.height() >= 2 * screen->emailLine()->height());
    QCOMPARE(website->height(), website->heightForWidth(website->width()));
    QCOMPARE(place.y() - screen->emailLine()->geometry().bottom() - 1, 16);
    click(website);
    QCOMPARE(QGuiApplication::clipboard()->text(), contents.website);
    QVERIFY(screen->view()->rect().contains(screen->toast()->geometry()));
    QVERIFY(!screen->toast()->geometry().intersects(place));
}

int main(int argc, char *argv[])
{
    return runScreenTest<HelpViewTest>(argc, argv);
}

#include "HelpViewTest.moc"
