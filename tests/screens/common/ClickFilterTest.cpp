#include "screens/common/ClickFilter.h"

#include "support/ScreenTest.h"

#include <QPushButton>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// A button that goes when it is clicked, and one that lies behind it.
class ClickFilterTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void theSecondClickOfADoubleClickDoesNotReachWhatHasAppeared();
    void norDoesItWhenTheFirstWidgetIsDestroyed();
    void aSlowSecondClickDoes();
    void aQuickClickElsewhereDoes();
    void aQuickClickOfAnotherButtonOfTheMouseDoes();
    void aDoubleClickOnOneWidgetStaysOne();
    void theSecondClickGivesNoFocus();

private:
    void click(QPoint position) { QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, position); }
    void doubleClick(QPoint position)
    {
        QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {}, position);
    }

    const QPoint inFront{50, 50};
    const QPoint beside{50, 150};
    std::unique_ptr<QWidget> window;
    QPushButton *first = nullptr;
    QPushButton *second = nullptr;
    int clicks = 0; ///< Of the second button.
};

namespace
{

class DoubleClickCounter final : public QWidget
{
public:
    using QWidget::QWidget;
    int count = 0;

protected:
    void mouseDoubleClickEvent(QMouseEvent * /*event*/) override { ++count; }
};

} // namespace

void ClickFilterTest::init()
{
    window = std::make_unique<QWidget>();
    // Installed like this it is the first filter, as in the application.
    qApp->installEventFilter(new ClickFilter{window.get()});
    second = new QPushButton{window.get()};
    second->setGeometry(0, 0, 100, 200);
    first = new QPushButton{window.get()};
    first->setGeometry(0, 0, 100, 100);
    connect(first, &QPushButton::clicked, first, &QWidget::hide);
    clicks = 0;
    connect(second, &QPushButton::clicked, this, [this] { ++clicks; });
    showWindow(*window, {200, 200});
}

void ClickFilterTest::theSecondClickOfADoubleClickDoesNotReachWhatHasAppeared()
{
    doubleClick(inFront);
    QVERIFY(!first->isVisible());
    QCOMPARE(clicks, 0);
    QVERIFY(!second->isDown());
}

void ClickFilterTest::norDoesItWhenTheFirstWidgetIsDestroyed()
{
    connect(
        first, &QPushButton::clicked, this, [this] { delete first; }, Qt::QueuedConnection);
    doubleClick(inFront);
    QTRY_COMPARE(window->findChildren<QPushButton *>().size(), 1);
    QCOMPARE(clicks, 0);
}

void ClickFilterTest::aSlowSecondClickDoes()
{
    // Qt Test lets more than the interval of a double click lie between the times of two clicks.
    click(inFront);
    click(inFront);
    QCOMPARE(clicks, 1);
}

void ClickFilterTest::aQuickClickElsewhereDoes()
{
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, inFront);
    first->hide();
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, beside);
    QVERIFY(second->isDown());
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, beside);
    QCOMPARE(clicks, 1);
}

void ClickFilterTest::aQuickClickOfAnotherButtonOfTheMouseDoes()
{
    second->setContextMenuPolicy(Qt::CustomContextMenu);
    int menus = 0;
    connect(second, &QWidget::customContextMenuRequested, this, [&menus] { ++menus; });
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, inFront);
    first->hide();
    QTest::mousePress(window->windowHandle(), Qt::RightButton, {}, inFront);
    QCOMPARE(menus, 1);
    QTest::mouseRelease(window->windowHandle(), Qt::RightButton, {}, inFront);
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, inFront);
}

void ClickFilterTest::aDoubleClickOnOneWidgetStaysOne()
{
    auto *counter = new DoubleClickCounter{window.get()};
    counter->setGeometry(100, 0, 100, 200);
    counter->show();
    doubleClick({150, 100});
    QCOMPARE(counter->count, 1);
}

void ClickFilterTest::theSecondClickGivesNoFocus()
{
    second->setFocusPolicy(Qt::ClickFocus);
    window->setFocus();
    doubleClick(inFront);
    QVERIFY(!second->hasFocus());
}

int main(int argc, char **argv)
{
    return runScreenTest<ClickFilterTest>(argc, argv);
}
#include "ClickFilterTest.moc"
