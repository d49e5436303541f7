#include "screens/help/Toast.h"

#include "screens/common/Theme.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

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
using std::chrono_literals::operator""h;
using std::chrono_literals::operator""ms;

class ToastTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void theTimesAreThoseOfTheProduct();
    void itFadesInAndOut();
    void itLiesAtTheBottomCentre();
    void itIsABlackCapsuleWithWhiteText();
    void itsTextIsOfMediumWeight();
    void aSecondMessageReplacesTheFirstAtOnce();
    void theFirstMessagesEndTakesTheSecondAway();
    void theSecondMessagesEndTakesTheThirdAway();
    void aMessageDuringTheFadeOutComesBackFromThere();
    void itKeepsItsMessageWhenItHasGone();
    void thePointerPassesThroughIt();
    void nothingIsDoneWhileNothingMoves();
    void itMayGoWhileItFadesAndWhileItStays();
    void aLongMessageStaysInsideTheScreen();
    void screenReadersFindANotificationWhileItIsThere();

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

/// Lets the clock go on without letting any event come.
void letAMomentPass()
{
    QElapsedTimer clock;
    clock.start();
    while (clock.nsecsElapsed() < 3'000'000) {
    }
}

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

void ToastTest::init()
{
    make(1h);
}

void ToastTest::make(std::chrono::milliseconds stay)
{
    window = std::make_unique<QWidget>();
    toast = new Toast{window.get(), stay};
    showWindow(*window, {1000, 643});
    QVERIFY(!toast->isVisible());
    QVERIFY(!toast->isUp());
}

void ToastTest::theTimesAreThoseOfTheProduct()
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

void ToastTest::itFadesInAndOut()
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

void ToastTest::itLiesAtTheBottomCentre()
{
    toast->showMessage(u"已复制：support@quilmora.example"_s);
    for (const QSize size : {QSize{1000, 643}, QSize{1600, 943}}) {
        window->resize(size);
        toast->place();
        const QRect place = toast->geometry();
        QCOMPARE(size.height() - place.y() - place.height(), 60);
        const int left = place.x();
        const int right = size.width() - place.x() - place.width();
        QVERIFY(std::abs(left - right) <= 1);
    }
    QFont font = QApplication::font();
    font.setPixelSize(13);
    font.setWeight(QFont::Medium);
    const QFontMetricsF metrics{font};
    const double textWidth = metrics.horizontalAdvance(u"已复制：support@quilmora.example"_s);
    QVERIFY(std::abs(toast->width() - textWidth - 2 * 18) <= 1.5);
    QVERIFY(std::abs(toast->height() - metrics.height() - 2 * 10) <= 1.5);
}

void ToastTest::itIsABlackCapsuleWithWhiteText()
{
    toast->showMessage(u"已复制：文"_s);
    QTRY_VERIFY(isFullyShown());
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        Theme::current().setScheme(scheme);
        const QImage shown = screenCapture::capture(toast, 2.0);
        const double middle = toast->height() / 2.0;
        QCOMPARE(screenCapture::colorAt(shown, {4, middle}), QColor(0, 0, 0, wholeOpacity));
        QCOMPARE(screenCapture::colorAt(shown, {toast->width() / 2.0, 4}), QColor(0, 0, 0, wholeOpacity));
        QVERIFY(screenCapture::countOf(shown, Qt::white, {}, 4) > 20);
    }
    Theme::current().setScheme(ColorScheme::light);
    // The ends are half circles: a quarter circle is missing at each corner.
    const QImage shown = screenCapture::capture(toast, 2.0);
    const int radius = shown.height() / 2;
    for (const double share : {0.25, 0.5}) {
        const int inset = qRound(radius * share);
        const int edge = qRound(radius - std::sqrt(radius * radius - (radius - inset) * (radius - inset)));
        QCOMPARE(shown.pixelColor(edge - 3, inset).alpha(), 0);
        QCOMPARE(shown.pixelColor(edge + 3, inset).alpha(), wholeOpacity);
        QCOMPARE(shown.pixelColor(shown.width() - 1 - (edge - 3), inset).alpha(), 0);
    }
}

void ToastTest::itsTextIsOfMediumWeight()
{
    // Not every font has a medium face, so that pixels would not tell.
    QCOMPARE(toast->font().pixelSize(), 13);
    QCOMPARE(toast->font().weight(), QFont::Medium);
}

void ToastTest::aSecondMessageReplacesTheFirstAtOnce()
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

void ToastTest::theFirstMessagesEndTakesTheSecondAway()
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

void ToastTest::theSecondMessagesEndTakesTheThirdAway()
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

void ToastTest::aMessageDuringTheFadeOutComesBackFromThere()
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

void ToastTest::itKeepsItsMessageWhenItHasGone()
{
    make(1ms);
    toast->showMessage(u"已复制：文"_s);
    QTRY_VERIFY(!toast->isVisible());
    QCOMPARE(toast->message(), u"已复制：文"_s);
}

void ToastTest::thePointerPassesThroughIt()
{
    auto *below = new QPushButton{window.get()};
    below->setGeometry(window->rect());
    below->show();
    const QSignalSpy clicks{below, &QPushButton::clicked};
    toast->showMessage(u"已复制：文"_s);
    QTRY_VERIFY(isFullyShown());
    QCOMPARE(window->children().constLast(), toast.data());
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, toast->geometry().center());
    QCOMPARE(clicks.size(), 1);
    QVERIFY(toast->isUp());
    QCOMPARE(toast->focusPolicy(), Qt::NoFocus);
}

void ToastTest::nothingIsDoneWhileNothingMoves()
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

void ToastTest::itMayGoWhileItFadesAndWhileItStays()
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

void ToastTest::aLongMessageStaysInsideTheScreen()
{
    toast->showMessage(u"已复制："_s);
    const int lineHeight = toast->height() - 2 * 10;
    toast->showMessage(u"已复制：https://quilmora.example/"_s + QString{175, u'a'});
    QVERIFY(window->rect().adjusted(20, 0, -20, -60).contains(toast->geometry()));
    QCOMPARE(toast->height(), 3 * lineHeight + 2 * 10);
    // Even a much longer one has its text on the black ground.
    toast->showMessage(u"已复制："_s + QString{2000, u'a'});
    QTRY_VERIFY(isFullyShown());
    const QImage shown = screenCapture::capture(toast);
    QCOMPARE(shown.pixelColor(18, 10).alpha(), wholeOpacity);
    QCOMPARE(shown.pixelColor(0, 0).alpha(), 0);
}

void ToastTest::screenReadersFindANotificationWhileItIsThere()
{
    const QAccessibleInterface *interface = accessible::interfaceOf(toast);
    QCOMPARE(interface->role(), QAccessible::Notification);
    QVERIFY(interface->state().invisible);
    for (const QString &message : {u"已复制：a"_s, u"已复制：b"_s}) {
        toast->showMessage(message);
        QVERIFY(!interface->state().invisible);
        QCOMPARE(accessible::find<Toast>(window.get(), message), toast);
    }
}

int main(int argc, char *argv[])
{
    return runScreenTest<ToastTest>(argc, argv);
}

#include "ToastTest.moc"
