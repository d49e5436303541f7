#include "app/ClickFilter.h"
#include "model/CoverSize.h"
#include "support/GenerateScreen.h"
#include "support/HistoryScreen.h"
#include "support/Placement.h"
#include "support/TestProgram.h"
#include "ui/dialogs/AlertDialog.h"

#include <QPushButton>
#include <QScrollBar>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

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
    void initTestCase() { qApp->installEventFilter(&m_filter); }

    void goingBackFromAResultKeepsTheForm_data()
    {
        QTest::addColumn<QSize>("size");
        for (const CoverSize &size : CoverSize::presets()) {
            QTest::newRow(qPrintable(size.name))
                << QSize(static_cast<int>(size.width), static_cast<int>(size.height)) / 8;
        }
    }

    void goingBackFromAResultKeepsTheForm()
    {
        QFETCH(const QSize, size);
        GenerateScreen screen{GenerateScreen::respondWithPicture(size)};
        const QStringList chosen = chosenOptions(screen.window);
        screen.generate(u"标题"_s);
        QTRY_VERIFY(screen.shows(texts::back));
        doubleClick(screen.window, centerOf(screen.find(texts::back)));
        QTRY_VERIFY(screen.generateButton() != nullptr);
        QCOMPARE(chosenOptions(screen.window), chosen);
        QCOMPARE(screen.panels.referencePanelCount(), 0);
    }

    void aTileOpensThePreviewAndPressesNoneOfItsButtons_data()
    {
        QTest::addColumn<QString>("below");
        for (const QString &name : {texts::savePicture, texts::closePreview, texts::close}) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }

    void aTileOpensThePreviewAndPressesNoneOfItsButtons()
    {
        QFETCH(const QString, below);
        HistoryScreen screen;
        openHistory(screen);
        const QPoint place = placeInPreview(screen, below);
        QVERIFY(scrollTileUnder(screen, place));
        doubleClick(screen.window, place);
        QVERIFY(HistoryScreen::preview() != nullptr);
        QCOMPARE(screen.panels.proposedNames(), QStringList{});
    }

    void closingThePreviewOpensNoOther_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("button") << texts::closePreview;
        QTest::newRow("symbol") << texts::close;
    }

    void closingThePreviewOpensNoOther()
    {
        QFETCH(const QString, name);
        HistoryScreen screen;
        openHistory(screen);
        const QPoint place = placeInPreview(screen, name);
        QVERIFY(scrollTileUnder(screen, place));
        screen.clickTile(0);
        doubleClick(screen.window, place);
        QVERIFY(HistoryScreen::preview() == nullptr);
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

    static void openHistory(HistoryScreen &screen)
    {
        constexpr int covers = 16;
        screen.addCovers(covers);
        // So large that tiles lie below all of the preview.
        screen.open({1400, 1080});
    }

    ClickFilter m_filter;
};

QUILMORA_TEST(DoubleClickTest, runScreenTest)
#include "DoubleClickTest.moc"
