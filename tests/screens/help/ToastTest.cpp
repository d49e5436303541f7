#include "screens/help/Toast.h"

#include "screens/common/Theme.h"
#include "support/AccessibleFinder.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QVariantAnimation>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// A toast while it is there.
class ToastTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void itLiesAtTheBottomCentre();
    void itIsABlackCapsuleWithWhiteText();
    void itsTextIsOfMediumWeight();
    void thePointerPassesThroughIt();
    void aLongMessageStaysInsideTheScreen();
    void screenReadersFindANotificationWhileItIsThere();

private:
    bool isFullyShown() const
    {
        return toast->findChild<QVariantAnimation *>()->state() == QAbstractAnimation::Stopped;
    }

    std::unique_ptr<QWidget> window;
    QPointer<Toast> toast;
};

namespace
{

constexpr int wholeOpacity = 199; // 78 % of 255

} // namespace

void ToastTest::init()
{
    window = std::make_unique<QWidget>();
    toast = new Toast{window.get(), 1h};
    showWindow(*window, {1000, 643});
    QVERIFY(!toast->isVisible());
    QVERIFY(!toast->isUp());
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
    toast->showMessage(u"已复制：文"_s);
    const Drawing drawn{toast};
    QCOMPARE(drawn.lookOf(u"已复制：文"_s), Drawing::look(13, QFont::Medium, Qt::white));
    QCOMPARE(placement::padding(toast->rect(), drawn.placeOf(u"已复制：文"_s)), u"18, 10, 18, 10"_s);
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
