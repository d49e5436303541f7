#include "app/ClickFilter.h"

#include "support/ScreenTest.h"

#include <QPushButton>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

class DoubleClickCounter final : public QWidget
{
public:
    using QWidget::QWidget;
    int count = 0;

protected:
    void mouseDoubleClickEvent(QMouseEvent * /*event*/) override { ++count; }
};

} // namespace

/// A button that goes when it is clicked, and one that lies behind it.
class ClickFilterTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        // Installed like this it is the first filter, as in the application.
        qApp->installEventFilter(new ClickFilter{m_window.get()});
        m_second = new QPushButton{m_window.get()};
        m_second->setGeometry(0, 0, 100, 200);
        m_first = new QPushButton{m_window.get()};
        m_first->setGeometry(0, 0, 100, 100);
        connect(m_first, &QPushButton::clicked, m_first, &QWidget::hide);
        m_clicks = 0;
        connect(m_second, &QPushButton::clicked, this, [this] { ++m_clicks; });
        showWindow(*m_window, {200, 200});
    }

    void cleanup() { m_window.reset(); }

    void theSecondClickOfADoubleClickDoesNotReachWhatHasAppeared()
    {
        doubleClick(m_inFront);
        QVERIFY(!m_first->isVisible());
        QCOMPARE(m_clicks, 0);
        QVERIFY(!m_second->isDown());
    }

    void norDoesItWhenTheFirstWidgetIsDestroyed()
    {
        connect(
            m_first, &QPushButton::clicked, this, [this] { delete m_first; }, Qt::QueuedConnection);
        doubleClick(m_inFront);
        QTRY_COMPARE(m_window->findChildren<QPushButton *>().size(), 1);
        QCOMPARE(m_clicks, 0);
    }

    void aSlowSecondClickDoes()
    {
        // Qt Test lets more than the interval of a double click lie between the times of two clicks.
        click(m_inFront);
        click(m_inFront);
        QCOMPARE(m_clicks, 1);
    }

    void aQuickClickElsewhereDoes()
    {
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, m_inFront);
        m_first->hide();
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, m_beside);
        QVERIFY(m_second->isDown());
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, m_beside);
        QCOMPARE(m_clicks, 1);
    }

    void aQuickClickOfAnotherButtonOfTheMouseDoes()
    {
        m_second->setContextMenuPolicy(Qt::CustomContextMenu);
        int menus = 0;
        connect(m_second, &QWidget::customContextMenuRequested, this, [&menus] { ++menus; });
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, m_inFront);
        m_first->hide();
        QTest::mousePress(m_window->windowHandle(), Qt::RightButton, {}, m_inFront);
        QCOMPARE(menus, 1);
        QTest::mouseRelease(m_window->windowHandle(), Qt::RightButton, {}, m_inFront);
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, m_inFront);
    }

    void aDoubleClickOnOneWidgetStaysOne()
    {
        auto *counter = new DoubleClickCounter{m_window.get()};
        counter->setGeometry(100, 0, 100, 200);
        counter->show();
        doubleClick({150, 100});
        QCOMPARE(counter->count, 1);
    }

    void theSecondClickGivesNoFocus()
    {
        m_second->setFocusPolicy(Qt::ClickFocus);
        m_window->setFocus();
        doubleClick(m_inFront);
        QVERIFY(!m_second->hasFocus());
    }

private:
    void click(QPoint position) { QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, position); }
    void doubleClick(QPoint position)
    {
        QTest::mouseDClick(m_window->windowHandle(), Qt::LeftButton, {}, position);
    }

    const QPoint m_inFront{50, 50};
    const QPoint m_beside{50, 150};
    std::unique_ptr<QWidget> m_window;
    QPushButton *m_first = nullptr;
    QPushButton *m_second = nullptr;
    int m_clicks = 0; ///< Of the second button.
};

QUILMORA_TEST(ClickFilterTest, runScreenTest)
#include "ClickFilterTest.moc"
