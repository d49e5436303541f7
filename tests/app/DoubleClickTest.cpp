#include "app/ClickFilter.h"
#include "model/CoverInputs.h"
#include "support/GenerateScreen.h"
#include "support/HistoryScreen.h"
#include "support/Placement.h"
#include "ui/dialogs/AlertDialog.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QWindow>

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

/// The names of the options that are chosen.
QStringList chosenOptions(QWidget &window)
{
    QStringList names;
    for (const auto *button : window.findChildren<QAbstractButton *>()) {
        if (button->isChecked()) {
            names.append(button->accessibleName());
        }
    }
    return names;
}

/// Where something of the preview lies when it is open. It is closed afterwards.
QPoint placeInPreview(HistoryScreen &screen, const QString &name)
{
    screen.clickTile(0);
    const QPoint place = placement::inWindow(accessible::find(HistoryScreen::preview(), name)).center();
    HistoryScreen::preview()->close();
    return place;
}

/// Scrolls the grid until a tile lies there.
bool scrollTileUnder(HistoryScreen &screen, QPoint place)
{
    const QPoint inGrid = screen.grid()->viewport()->mapFrom(&screen.window, place);
    for (int step = 0; step < 20 && !screen.grid()->indexAt(inGrid).isValid(); ++step) {
        screen.grid()->verticalScrollBar()->setValue(screen.grid()->verticalScrollBar()->value() + 10);
    }
    return screen.grid()->indexAt(inGrid).isValid();
}

} // namespace

/// Where a click exchanges what lies under the pointer, the second click of a double click does nothing.
class DoubleClickTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A button that goes when it is clicked, and one that lies behind it.
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
        m_second->setFocusPolicy(Qt::ClickFocus);
        m_window->setFocus();
        doubleClick(*m_window, m_inFront);
        QVERIFY(!m_first->isVisible());
        QCOMPARE(m_clicks, 0);
        QVERIFY(!m_second->isDown());
        QVERIFY(!m_second->hasFocus());
        // Nor when the first widget is destroyed.
        m_first->show();
        connect(
            m_first, &QPushButton::clicked, this, [this] { delete m_first; }, Qt::QueuedConnection);
        doubleClick(*m_window, m_inFront);
        QTRY_COMPARE(m_window->findChildren<QPushButton *>().size(), 1);
        QCOMPARE(m_clicks, 0);
    }

    void aSlowSecondClickDoes()
    {
        // Qt Test lets more than the interval of a double click lie between the times of two clicks.
        for (int times = 0; times < 2; ++times) {
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, m_inFront);
        }
        QCOMPARE(m_clicks, 1);
    }

    void aQuickClickElsewhereOrOfAnotherButtonDoes()
    {
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, m_inFront);
        m_first->hide();
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, m_beside);
        QVERIFY(m_second->isDown());
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, m_beside);
        QCOMPARE(m_clicks, 1);

        m_first->show();
        m_second->setContextMenuPolicy(Qt::CustomContextMenu);
        const QSignalSpy menus{m_second, &QWidget::customContextMenuRequested};
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, m_inFront);
        m_first->hide();
        QTest::mousePress(m_window->windowHandle(), Qt::RightButton, {}, m_inFront);
        QCOMPARE(menus.size(), 1);
        QTest::mouseRelease(m_window->windowHandle(), Qt::RightButton, {}, m_inFront);
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, m_inFront);
    }

    void aDoubleClickOnOneWidgetStaysOne()
    {
        auto *counter = new DoubleClickCounter{m_window.get()};
        counter->setGeometry(100, 0, 100, 200);
        counter->show();
        doubleClick(*m_window, {150, 100});
        QCOMPARE(counter->count, 1);
    }

    void goingBackFromAResultKeepsTheForm()
    {
        for (const CoverSize &size : CoverSize::presets()) {
            const QSize picture{static_cast<int>(size.width) / 8, static_cast<int>(size.height) / 8};
            GenerateScreen screen{GenerateScreen::respondWithPicture(picture)};
            const QStringList chosen = chosenOptions(screen.window);
            screen.generate(u"标题"_s);
            QTRY_VERIFY(screen.shows(texts::back));
            doubleClick(screen.window, centerOf(screen.find(texts::back)));
            QTRY_VERIFY(screen.generateButton() != nullptr);
            QVERIFY2(chosenOptions(screen.window) == chosen, qPrintable(size.name));
            QVERIFY2(screen.panels.referencePanelCount() == 0, qPrintable(size.name));
        }
    }

    void openingAndClosingThePreviewPressesNothingElse()
    {
        for (const QString &name : {texts::savePicture, texts::closePreview, texts::close}) {
            HistoryScreen screen;
            screen.addCovers(16);
            // So large that tiles lie below all of the preview.
            screen.open({1400, 1080});
            const QPoint place = placeInPreview(screen, name);
            QVERIFY(scrollTileUnder(screen, place));
            doubleClick(screen.window, place);
            QVERIFY2(HistoryScreen::preview() != nullptr, qPrintable(name));
            QCOMPARE(screen.panels.proposedNames(), QStringList{});
            if (name != texts::savePicture) {
                doubleClick(screen.window, place);
                QVERIFY2(HistoryScreen::preview() == nullptr, qPrintable(name));
            }
        }
    }

    void closingTheAlertPressesNothingBelow()
    {
        QWidget window;
        int clicks = 0;
        auto *below = new QPushButton{&window};
        connect(below, &QPushButton::clicked, this, [&clicks] { ++clicks; });
        showWindow(window, {1000, 700});
        below->setGeometry(window.rect());
        AlertDialog::open(texts::saved, {}, texts::confirm, &window);
        doubleClick(window, centerOf(accessible::find(openSheet(), texts::confirm)));
        QTRY_VERIFY(openSheet() == nullptr);
        QCOMPARE(clicks, 0);
    }

private:
    static void doubleClick(QWidget &window, QPoint position)
    {
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, position);
    }
    static QPoint centerOf(QWidget *widget) { return placement::inWindow(widget).center(); }

    const QPoint m_inFront{50, 50};
    const QPoint m_beside{50, 150};
    std::unique_ptr<QWidget> m_window;
    QPushButton *m_first = nullptr;
    QPushButton *m_second = nullptr;
    int m_clicks = 0; ///< Of the second button.
};

QUILMORA_TEST(DoubleClickTest, runScreenTest)
#include "DoubleClickTest.moc"
