#include "screens/help/Toast.h"

#include "support/AccessibleFinder.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Theme.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QVariantAnimation>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

constexpr int wholeOpacity = 199; // 78 % of 255

/// Counts what a window that does not move must not do.
class Movements final : public QObject
{
public:
    Movements() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        const bool moves = event->type() == QEvent::Timer || event->type() == QEvent::Paint ||
                           event->type() == QEvent::UpdateRequest;
        count += moves ? 1 : 0;
        return false;
    }
    int count = 0;
};

/// Lets the clock go on without letting any event come.
void letAMomentPass()
{
    QElapsedTimer clock;
    clock.start();
    while (clock.nsecsElapsed() < 3'000'000) {
    }
}

int movementsInAWhile()
{
    const Movements movements;
    QElapsedTimer clock;
    clock.start();
    while (!clock.hasExpired(300)) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    return movements.count;
}

} // namespace

/// How a toast looks, and when it comes and goes.
class ToastTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { make(1h); }

    void cleanup() { m_window.reset(); }

    void itIsABlackCapsuleWithWhiteText()
    {
        const QString message = u"已复制：文"_s;
        m_toast->showMessage(message);
        QTRY_VERIFY(isFullyShown());
        for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
            Theme::current().setScheme(scheme);
            const QImage shown = screenCapture::capture(m_toast, 2.0);
            const QColor black{0, 0, 0, wholeOpacity};
            QCOMPARE(screenCapture::colorAt(shown, {4, m_toast->height() / 2.0}), black);
            QCOMPARE(screenCapture::colorAt(shown, {m_toast->width() / 2.0, 4}), black);
            QVERIFY(screenCapture::countOf(shown, Qt::white, {}, 4) > 20);
        }
        Theme::current().setScheme(ColorScheme::light);
        QCOMPARE(CornerShape{m_toast}.differenceFromCircle(m_toast->height() / 2.0), QString{});
        // Not every font has a medium face, so that pixels would not tell.
        const Drawing drawn{m_toast};
        QCOMPARE(drawn.lookOf(message), Drawing::look(13, QFont::Medium, Qt::white));
        QCOMPARE(placement::padding(m_toast->rect(), drawn.placeOf(message)), u"18, 10, 18, 10"_s);
    }

    void thePointerPassesThroughIt()
    {
        auto *below = new QPushButton{m_window.get()};
        below->setGeometry(m_window->rect());
        below->show();
        const QSignalSpy clicks{below, &QPushButton::clicked};
        m_toast->showMessage(u"已复制：文"_s);
        QTRY_VERIFY(isFullyShown());
        QCOMPARE(m_window->children().constLast(), m_toast.data());
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, m_toast->geometry().center());
        QCOMPARE(clicks.size(), 1);
        QVERIFY(m_toast->isUp());
        QCOMPARE(m_toast->focusPolicy(), Qt::NoFocus);
    }

    void aLongMessageStaysInsideTheScreen()
    {
        m_toast->showMessage(u"已复制："_s);
        const int lineHeight = m_toast->height() - 2 * 10;
        m_toast->showMessage(u"已复制：https://quilmora.example/"_s + QString{175, u'a'});
        QVERIFY(m_window->rect().adjusted(20, 0, -20, -60).contains(m_toast->geometry()));
        QCOMPARE(m_toast->height(), 3 * lineHeight + 2 * 10);
        // Even a much longer one has its text on the black ground.
        m_toast->showMessage(u"已复制："_s + QString{2000, u'a'});
        QTRY_VERIFY(isFullyShown());
        const QImage shown = screenCapture::capture(m_toast);
        QCOMPARE(shown.pixelColor(18, 10).alpha(), wholeOpacity);
        QCOMPARE(shown.pixelColor(0, 0).alpha(), 0);
    }

    void theTimesAreThoseOfTheProduct()
    {
        QCOMPARE(Toast::usualStay, 1500ms);
        QCOMPARE(Toast::fadeInTime, 200ms);
        QCOMPARE(Toast::fadeOutTime, 300ms);
        delete m_toast;
        m_toast = new Toast{m_window.get()};
        QList<bool> wasUp;
        const auto look = [&] {
            wasUp.append(m_toast->isUp());
        };
        m_toast->showMessage(u"文"_s);
        // Timers that are late still come in the order in which they were due.
        QTimer::singleShot(1400ms, m_toast, look);
        letAMomentPass();
        QTimer::singleShot(1500ms, m_toast, look);
        QTRY_COMPARE(wasUp, (QList<bool>{true, false}));
    }

    void itFadesInAndOut()
    {
        make(400ms);
        QStringList runs;
        QList<double> values;
        connect(fade(), &QAbstractAnimation::stateChanged, this, [&](QAbstractAnimation::State state) {
            if (state == QAbstractAnimation::Running) {
                QCOMPARE(fade()->easingCurve().type(), QEasingCurve::InOutSine);
                runs.append(u"%1 to %2 in %3 ms"_s.arg(fade()->startValue().toDouble())
                                .arg(fade()->endValue().toDouble())
                                .arg(fade()->duration()));
            }
        });
        connect(fade(), &QVariantAnimation::valueChanged, this, [&](const QVariant &value) {
            if (fade()->state() == QAbstractAnimation::Running) {
                QVERIFY(m_toast->isVisible());
                values.append(value.toDouble());
            }
        });
        m_toast->showMessage(u"已复制：文"_s);
        QVERIFY(m_toast->isUp());
        QVERIFY(m_toast->isVisible());
        QCOMPARE(groundOpacity(), 0);
        QTRY_VERIFY(!m_toast->isVisible());
        QCOMPARE(runs, (QStringList{u"0 to 1 in 200 ms"_s, u"1 to 0 in 300 ms"_s}));
        QCOMPARE(values.constLast(), 0.0);
        const auto top = std::max_element(values.constBegin(), values.constEnd());
        QCOMPARE(*top, 1.0);
        QVERIFY(std::is_sorted(values.constBegin(), top));
        QVERIFY(std::is_sorted(top, values.constEnd(), std::greater<>{}));
    }

    void aSecondMessageReplacesTheFirstAtOnce()
    {
        const QAccessibleInterface *interface = accessible::interfaceOf(m_toast);
        QCOMPARE(interface->role(), QAccessible::Notification);
        QVERIFY(interface->state().invisible);
        m_toast->showMessage(u"已复制：a"_s);
        QVERIFY(!interface->state().invisible);
        QCOMPARE(accessible::find<Toast>(m_window.get(), u"已复制：a"_s), m_toast);
        QTRY_VERIFY(isFullyShown());
        const int width = m_toast->width();
        m_toast->showMessage(u"已复制：another one"_s);
        QCOMPARE(accessible::find<Toast>(m_window.get(), u"已复制：another one"_s), m_toast);
        QCOMPARE(m_toast->message(), u"已复制：another one"_s);
        QVERIFY2(isFullyShown(), "nothing fades");
        QCOMPARE(groundOpacity(), wholeOpacity);
        QVERIFY(m_toast->width() > width);
        QVERIFY(placement::centredAcross(m_toast->geometry(), m_window->rect()));
    }

    void everyMessagesEndTakesTheNextAway()
    {
        constexpr auto stay = 60ms;
        make(stay);
        bool thirdCame = false;
        bool wasUp = true;
        bool thirdStayIsOver = false;
        m_toast->showMessage(u"first"_s);
        letAMomentPass();
        // After the first message has gone and before the end of the second one's stay.
        QTimer::singleShot(stay, m_toast, [&] {
            thirdCame = !m_toast->isUp();
            QTimer::singleShot(stay, m_toast, [&] {
                wasUp = m_toast->isUp();
                thirdStayIsOver = true;
            });
            letAMomentPass();
            m_toast->showMessage(u"third"_s);
        });
        letAMomentPass();
        m_toast->showMessage(u"second"_s);
        QTRY_VERIFY(thirdStayIsOver);
        QVERIFY2(thirdCame, "the second is gone with the end of the first message's stay");
        QVERIFY2(!wasUp, "gone with the end of the second message's stay");
        QCOMPARE(m_toast->message(), u"third"_s);
        QTRY_VERIFY(!m_toast->isVisible());
    }

    void aMessageDuringTheFadeOutComesBackFromThere()
    {
        make(250ms);
        m_toast->showMessage(u"first"_s);
        while (m_toast->isUp()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        fade()->setCurrentTime(fade()->duration() / 2);
        const int before = groundOpacity();
        QVERIFY(std::abs(before - wholeOpacity / 2) <= 2);
        m_toast->showMessage(u"second"_s);
        QVERIFY(m_toast->isUp());
        QCOMPARE(groundOpacity(), before);
        QCOMPARE(fade()->endValue().toDouble(), 1.0);
        QTRY_VERIFY(!m_toast->isVisible());
    }

    void nothingIsDoneWhileNothingMoves()
    {
        m_toast->showMessage(u"已复制：文"_s);
        QTRY_VERIFY(isFullyShown());
        movementsInAWhile(); // the last of the fade
        QCOMPARE(movementsInAWhile(), 0);
        make(1ms);
        m_toast->showMessage(u"已复制：文"_s);
        QTRY_VERIFY(!m_toast->isVisible());
        QCOMPARE(m_toast->message(), u"已复制：文"_s);
        movementsInAWhile(); // the last of the fade
        QCOMPARE(movementsInAWhile(), 0);
        QCOMPARE(fade()->state(), QAbstractAnimation::Stopped);
    }

    void itMayGoWhileItFadesAndWhileItStays()
    {
        constexpr auto stay = 60ms;
        for (const bool waitForTheStay : {false, true}) {
            for (int messages = 1; messages <= 3; ++messages) {
                make(stay);
                for (int i = 0; i < messages; ++i) {
                    m_toast->showMessage(QString::number(i));
                }
                QTRY_VERIFY(!waitForTheStay || !m_toast->isUp());
                bool over = false;
                QTimer::singleShot(stay, this, [&over] { over = true; });
                m_window.reset();
                QVERIFY(m_toast.isNull());
                QTRY_VERIFY(over);
            }
        }
    }

private:
    void make(std::chrono::milliseconds stay)
    {
        m_window = std::make_unique<QWidget>();
        m_toast = new Toast{m_window.get(), stay};
        showWindow(*m_window, {1000, 643});
        QVERIFY(!m_toast->isVisible());
        QVERIFY(!m_toast->isUp());
    }

    QVariantAnimation *fade() const { return m_toast->findChild<QVariantAnimation *>(); }
    /// Opacity of the ground beside the text, from 0 to 255.
    int groundOpacity() const
    {
        return screenCapture::colorAt(screenCapture::capture(m_toast), {10, m_toast->height() / 2.0}).alpha();
    }
    bool isFullyShown() const
    {
        return fade()->state() == QAbstractAnimation::Stopped && m_toast->isVisible();
    }

    std::unique_ptr<QWidget> m_window;
    QPointer<Toast> m_toast;
};

QUILMORA_TEST(ToastTest, runScreenTest)
#include "ToastTest.moc"
