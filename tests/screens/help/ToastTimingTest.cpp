#include "HelpScreen.h"
#include "support/ScreenCapture.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QVariantAnimation>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// When a toast comes and goes.
class ToastTimingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void theTimesAreThoseOfTheProduct();
    void itFadesInAndOut();
    void aSecondMessageReplacesTheFirstAtOnce();
    void theFirstMessagesEndTakesTheSecondAway();
    void theSecondMessagesEndTakesTheThirdAway();
    void aMessageDuringTheFadeOutComesBackFromThere();
    void itKeepsItsMessageWhenItHasGone();
    void nothingIsDoneWhileNothingMoves();
    void itMayGoWhileItFadesAndWhileItStays();

private:
    void make(std::chrono::milliseconds stay);
    QVariantAnimation *fade() const { return toast->findChild<QVariantAnimation *>(); }
    /// Opacity of the ground beside the text, from 0 to 255.
    int groundOpacity() const
    {
        return screenCapture::colorAt(screenCapture::capture(toast), {10, toast->height() / 2.0}).alpha();
    }
    bool isFullyShown() const { return fade()->state() == QAbstractAnimation::Stopped && toast->isVisible(); }

    std::unique_ptr<QWidget> window;
    QPointer<Toast> toast;
};

namespace
{

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

void ToastTimingTest::init()
{
    make(1h);
}

void ToastTimingTest::make(std::chrono::milliseconds stay)
{
    window = std::make_unique<QWidget>();
    toast = new Toast{window.get(), stay};
    showWindow(*window, {1000, 643});
    QVERIFY(!toast->isVisible());
    QVERIFY(!toast->isUp());
}

void ToastTimingTest::theTimesAreThoseOfTheProduct()
{
    QCOMPARE(Toast::usualStay, 1500ms);
    QCOMPARE(Toast::fadeInTime, 200ms);
    QCOMPARE(Toast::fadeOutTime, 300ms);
    delete toast;
    toast = new Toast{window.get()};
    QList<bool> wasUp;
    const auto look = [&] {
        wasUp.append(toast->isUp());
    };
    toast->showMessage(u"文"_s);
    // Timers that are late still come in the order in which they were due.
    QTimer::singleShot(1400ms, toast, look);
    letAMomentPass();
    QTimer::singleShot(1500ms, toast, look);
    QTRY_COMPARE(wasUp, (QList<bool>{true, false}));
}

void ToastTimingTest::itFadesInAndOut()
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
            QVERIFY(toast->isVisible());
            values.append(value.toDouble());
        }
    });
    toast->showMessage(u"已复制：文"_s);
    QVERIFY(toast->isUp());
    QVERIFY(toast->isVisible());
    QCOMPARE(groundOpacity(), 0);
    QTRY_VERIFY(!toast->isVisible());
    QCOMPARE(runs, (QStringList{u"0 to 1 in 200 ms"_s, u"1 to 0 in 300 ms"_s}));
    QCOMPARE(values.constLast(), 0.0);
    const auto top = std::max_element(values.constBegin(), values.constEnd());
    QCOMPARE(*top, 1.0);
    QVERIFY(std::is_sorted(values.constBegin(), top));
    QVERIFY(std::is_sorted(top, values.constEnd(), std::greater<>{}));
}

void ToastTimingTest::aSecondMessageReplacesTheFirstAtOnce()
{
    toast->showMessage(u"已复制：a"_s);
    QTRY_VERIFY(isFullyShown());
    const QImage first = screenCapture::capture(toast);
    toast->showMessage(u"已复制：another one"_s);
    QCOMPARE(toast->message(), u"已复制：another one"_s);
    QVERIFY2(isFullyShown(), "nothing fades");
    QCOMPARE(groundOpacity(), wholeOpacity);
    const QImage second = screenCapture::capture(toast);
    QVERIFY(second.width() > first.width());
    QVERIFY(std::abs(2 * toast->x() + toast->width() - window->width()) <= 1);
}

void ToastTimingTest::theFirstMessagesEndTakesTheSecondAway()
{
    constexpr auto stay = 60ms;
    make(stay);
    toast->showMessage(u"first"_s);
    letAMomentPass();
    bool wasUp = true;
    bool secondStayIsOver = false;
    // Due no later than the end of the second message's own stay.
    QTimer::singleShot(stay, toast, [&] {
        wasUp = toast->isUp();
        secondStayIsOver = true;
    });
    toast->showMessage(u"second"_s);
    QCOMPARE(toast->message(), u"second"_s);
    QTRY_VERIFY(secondStayIsOver);
    QVERIFY2(!wasUp, "gone with the end of the first message's stay");
    QTRY_VERIFY(!toast->isVisible());
    QCOMPARE(toast->message(), u"second"_s);
}

void ToastTimingTest::theSecondMessagesEndTakesTheThirdAway()
{
    constexpr auto stay = 60ms;
    make(stay);
    bool thirdCame = false;
    bool wasUp = true;
    bool thirdStayIsOver = false;
    toast->showMessage(u"first"_s);
    letAMomentPass();
    // After the first message has gone and before the end of the second one's stay.
    QTimer::singleShot(stay, toast, [&] {
        thirdCame = !toast->isUp();
        QTimer::singleShot(stay, toast, [&] {
            wasUp = toast->isUp();
            thirdStayIsOver = true;
        });
        letAMomentPass();
        toast->showMessage(u"third"_s);
    });
    letAMomentPass();
    toast->showMessage(u"second"_s);
    QTRY_VERIFY(thirdStayIsOver);
    QVERIFY(thirdCame);
    QVERIFY2(!wasUp, "gone with the end of the second message's stay");
    QCOMPARE(toast->message(), u"third"_s);
    QTRY_VERIFY(!toast->isVisible());
}

void ToastTimingTest::aMessageDuringTheFadeOutComesBackFromThere()
{
    make(250ms);
    toast->showMessage(u"first"_s);
    while (toast->isUp()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    fade()->setCurrentTime(fade()->duration() / 2);
    const int before = groundOpacity();
    QVERIFY(std::abs(before - wholeOpacity / 2) <= 2);
    toast->showMessage(u"second"_s);
    QVERIFY(toast->isUp());
    QCOMPARE(groundOpacity(), before);
    QCOMPARE(fade()->endValue().toDouble(), 1.0);
    QTRY_VERIFY(!toast->isVisible());
}

void ToastTimingTest::itKeepsItsMessageWhenItHasGone()
{
    make(1ms);
    toast->showMessage(u"已复制：文"_s);
    QTRY_VERIFY(!toast->isVisible());
    QCOMPARE(toast->message(), u"已复制：文"_s);
}

void ToastTimingTest::nothingIsDoneWhileNothingMoves()
{
    toast->showMessage(u"已复制：文"_s);
    QTRY_VERIFY(isFullyShown());
    movementsInAWhile(); // the last of the fade
    QCOMPARE(movementsInAWhile(), 0);
    make(1ms);
    toast->showMessage(u"已复制：文"_s);
    QTRY_VERIFY(!toast->isVisible());
    movementsInAWhile(); // the last of the fade
    QCOMPARE(movementsInAWhile(), 0);
    QCOMPARE(fade()->state(), QAbstractAnimation::Stopped);
}

void ToastTimingTest::itMayGoWhileItFadesAndWhileItStays()
{
    constexpr auto stay = 60ms;
    for (const bool waitForTheStay : {false, true}) {
        for (int messages = 1; messages <= 3; ++messages) {
            make(stay);
            for (int i = 0; i < messages; ++i) {
                toast->showMessage(QString::number(i));
            }
            QTRY_VERIFY(!waitForTheStay || !toast->isUp());
            bool over = false;
            QTimer::singleShot(stay, this, [&over] { over = true; });
            window.reset();
            QVERIFY(toast.isNull());
            QTRY_VERIFY(over);
        }
    }
}

int main(int argc, char *argv[])
{
    return runScreenTest<ToastTimingTest>(argc, argv);
}

#include "ToastTimingTest.moc"
