#include "awkward/BuildConfiguration.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/HelpScreen.h"
#include "support/PaintWatcher.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "ui/theme/Symbol.h"
#include "ui/widgets/LogoView.h"

#include <QClipboard>
#include <QMimeData>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// How the help screen looks, and what a tap on its addresses does.
class HelpViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QGuiApplication::clipboard()->clear();
        open(HelpScreen::sample());
    }

    void cleanup() { m_screen.reset(); }

    void aTapCopiesExactlyTheAddress()
    {
        QVERIFY(!m_screen->toast()->isVisible());
        QCOMPARE(m_screen->toast()->message(), QString{});
        const QList<std::pair<ContactLine *, QString>> lines{
            {m_screen->emailLine(), HelpScreen::sample().email},
            {m_screen->websiteLine(), HelpScreen::sample().website}};
        for (const auto &[line, address] : lines) {
            auto *former = new QMimeData;
            former->setHtml(u"<b>former</b>"_s);
            former->setImageData(QImage{2, 2, QImage::Format_RGB32});
            former->setUrls({QUrl{u"file:///former"_s}});
            QGuiApplication::clipboard()->setMimeData(former);
            click(line);
            const QMimeData *now = QGuiApplication::clipboard()->mimeData();
            QCOMPARE(now->formats(), QStringList{u"text/plain"_s});
            QCOMPARE(now->data(u"text/plain"_s), address.toUtf8());
            QCOMPARE(m_screen->toast()->message(), u"已复制："_s + address);
            QVERIFY(m_screen->toast()->isUp());
        }
    }

    void theTabKeyVisitsBothLinesAndReturnCopies()
    {
        m_screen->emailLine()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(QGuiApplication::clipboard()->text(), HelpScreen::sample().email);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(m_screen->websiteLine()->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(QGuiApplication::clipboard()->text(), HelpScreen::sample().website);
        QVERIFY2(m_screen->websiteLine()->hasFocus(), "the toast takes no focus");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(!m_screen->websiteLine()->hasFocus());
    }

    void withoutAnyLogoThePageShowsTheSymbolIn96By96()
    {
        AboutInformation contents = HelpScreen::sample();
        contents.logo = {{u"/nowhere"_s}, u":/nothing.png"_s};
        open(contents);
        auto *logo = accessible::find<LogoView>(m_screen->window(), u"Quilmora"_s);
        QCOMPARE(logo->size(), QSize(96, 96));
        const QImage symbol =
            Symbol::pixmap(u"sparkles.rectangle.stack.fill"_s, 96, themeColor(ColorRole::primaryText), 1.0)
                .toImage()
                .convertToFormat(QImage::Format_ARGB32);
        QVERIFY(screenCapture::countOf(symbol, Qt::transparent) < 96 * 96 / 2);
        QCOMPARE(screenCapture::capture(logo), symbol);
    }

    void thePageSaysWhatTheBuildWasGiven()
    {
        // What a publisher hands to the build comes out to the character.
        QCOMPARE(buildConfiguration::supportEmail.toString(), u"\"a\\nb\" <小@quilmora.example>"_s);
        QCOMPARE(buildConfiguration::website.toString(),
                 u"https://quilmora.example/?a=1&b=\"2\";c=%20#d${e}@f@)\""_s);
        open(AboutInformation::current());
        const QString email = QString::fromUtf8(SUPPORT_EMAIL);
        const QString website = QString::fromUtf8(WEBSITE);
        QVERIFY(m_screen->label(u"版本号："_s + QString::fromUtf8(PROGRAM_VERSION)) != nullptr);
        QVERIFY(m_screen->line(u"客服邮箱："_s + email) != nullptr);
        QVERIFY(m_screen->line(u"服务帮助："_s + website + u"（仅技术支持与使用说明）"_s) != nullptr);
        click(m_screen->line(u"客服邮箱："_s + email));
        QCOMPARE(QGuiApplication::clipboard()->text(), email);
        QCOMPARE(AboutInformation::current().toastStay, 1500ms);
        AboutInformation contents = HelpScreen::sample();
        contents.toastStay = 1ms;
        open(contents);
        click(m_screen->emailLine());
        QTRY_VERIFY_WITH_TIMEOUT(!m_screen->toast()->isUp(), 1400);
    }

    void everyTextHasItsFontAndColorAndTheLogoItsShape()
    {
        const Drawing drawn{m_screen->view()};
        const QColor primary = themeColor(ColorRole::primaryText);
        auto *logo = accessible::find<LogoView>(m_screen->window(), u"Quilmora"_s);
        QCOMPARE(logo->size(), QSize(96, 96));
        const DrawnPixmap picture = Drawing{logo}.pixmaps().constFirst();
        QCOMPARE(picture.pixmap.size(), QSize(96, 96));
        QCOMPARE(CornerShape{picture.leftHalf()}.differenceFromCircle(20), QString{});
        QCOMPARE(drawn.lookOf(u"Quilmora"_s), Drawing::look(18, QFont::DemiBold, primary));
        QCOMPARE(drawn.lookOf(u"版本号：1.0.0"_s),
                 Drawing::look(13, QFont::Normal, ColorRole::secondaryText));
        for (ContactLine *contact : {m_screen->emailLine(), m_screen->websiteLine()}) {
            const QString text = accessible::interfaceOf(contact)->text(QAccessible::Name);
            QCOMPARE(drawn.lookOf(text), Drawing::look(13, QFont::Normal, primary));
            // As high as the label of the same font.
            QCOMPARE(contact->height(), m_screen->label(u"版本号：1.0.0"_s)->height());
        }
    }

    void theContentIsCentredWithEvenSpaces()
    {
        click(m_screen->emailLine());
        for (const QSize size : {QSize{1000, 643}, QSize{1600, 943}}) {
            m_screen->window()->resize(size);
            QTRY_COMPARE(m_screen->view()->size(), size);
            const QList<QWidget *> items{accessible::find<LogoView>(m_screen->window(), u"Quilmora"_s),
                                         m_screen->label(u"Quilmora"_s), m_screen->label(u"版本号：1.0.0"_s),
                                         m_screen->emailLine(), m_screen->websiteLine()};
            for (const QWidget *item : items) {
                const QRect place = placement::inWindow(item);
                QVERIFY(placement::centredAcross(place, QRect{{}, size}));
                QCOMPARE(place.size(), item->sizeHint());
            }
            QVERIFY(m_screen->toast()->y() > placement::inWindow(m_screen->websiteLine()).bottom());
            QCOMPARE(m_screen->toast()->geometry().bottom() + 1, size.height() - 60);
            QVERIFY(placement::centredAcross(m_screen->toast()->geometry(), QRect{{}, size}));
            for (int i = 1; i < items.size(); ++i) {
                QCOMPARE(placement::gapBelow(items.at(i - 1), items.at(i)), 16);
            }
            const int top = placement::inWindow(items.constFirst()).y();
            const QRect last = placement::inWindow(items.constLast());
            QVERIFY(std::abs(top - (size.height() - last.y() - last.height())) <= 1);
        }
    }

    void theFocusRingShowsOnlyAfterTheTabKey()
    {
        const QColor accent = themeColor(ColorRole::accent);
        const QColor ring{accent.red(), accent.green(), accent.blue(), 230}; // 90 %
        const auto ringPixels = [&](QWidget *around) {
            const QRect area = placement::inWindow(around).adjusted(-10, -8, 10, 8);
            return screenCapture::countOf(screenCapture::capture(m_screen->view()), ring, area, 3);
        };
        QCOMPARE(ringPixels(m_screen->emailLine()), 0);
        click(m_screen->emailLine());
        QCOMPARE(ringPixels(m_screen->emailLine()), 0);
        m_screen->emailLine()->setFocus(Qt::OtherFocusReason);
        QTest::keyClick(m_screen->emailLine(), Qt::Key_Tab);
        QVERIFY(ringPixels(m_screen->websiteLine()) > m_screen->websiteLine()->width());
        QCOMPARE(ringPixels(m_screen->emailLine()), 0);
        // It lies around the text, not on it.
        const QImage inside =
            screenCapture::capture(m_screen->view()).copy(placement::inWindow(m_screen->websiteLine()));
        QCOMPARE(screenCapture::countOf(inside, ring, {}, 20), 0);
        m_screen->websiteLine()->clearFocus();
        QCOMPARE(ringPixels(m_screen->websiteLine()), 0);
    }

    void theFocusRingIsPaintedAtOnce()
    {
        QRegion painted;
        const PaintWatcher watcher{[&](const QWidget &widget, const QRegion &area) {
            painted += &widget == m_screen->view() ? area : QRegion{};
        }};
        // The window has drawn itself before.
        m_screen->view()->update();
        QTRY_VERIFY(!painted.isEmpty());
        for (const bool comes : {true, false}) {
            painted = {};
            if (comes) {
                m_screen->websiteLine()->setFocus(Qt::TabFocusReason);
            } else {
                m_screen->websiteLine()->clearFocus();
            }
            const QRect ring = placement::inWindow(m_screen->websiteLine()).adjusted(-5, -5, 5, 5);
            QTRY_VERIFY(painted.intersected(ring) == QRegion{ring});
        }
    }

    void aVeryLongWebsiteIsReadableAsAWhole()
    {
        AboutInformation contents = HelpScreen::sample();
        contents.website = u"https://quilmora.example/"_s + QString{175, u'w'};
        QCOMPARE(contents.website.size(), 200);
        open(contents);
        ContactLine *website =
            m_screen->line(u"服务帮助："_s + contents.website + u"（仅技术支持与使用说明）"_s);
        QCOMPARE(m_screen->window()->size(), QSize(1000, 643));
        const QRect place = placement::inWindow(website);
        QVERIFY(m_screen->view()->rect().adjusted(20, 20, -20, -20).contains(place));
        QVERIFY(place.height() >= 2 * m_screen->emailLine()->height());
        QCOMPARE(website->height(), website->heightForWidth(website->width()));
        QCOMPARE(place.y() - m_screen->emailLine()->geometry().bottom() - 1, 16);
        click(website);
        QCOMPARE(QGuiApplication::clipboard()->text(), contents.website);
        QVERIFY(m_screen->view()->rect().contains(m_screen->toast()->geometry()));
        QVERIFY(!m_screen->toast()->geometry().intersects(place));
    }

private:
    void open(const AboutInformation &contents)
    {
        m_screen.reset();
        m_screen = std::make_unique<HelpScreen>(contents);
    }

    std::unique_ptr<HelpScreen> m_screen;
};

QUILMORA_TEST(HelpViewTest, runScreenTest)
#include "HelpViewTest.moc"
