#include "GenerateScreen.h"
#include "HistoryScreen.h"
#include "model/CoverSize.h"
#include "screens/common/AlertPanel.h"
#include "screens/common/ClickFilter.h"
#include "support/Placement.h"

#include <QPushButton>
#include <QScrollBar>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// Where a click exchanges what lies under the pointer, the second click of a double click does nothing.
class DoubleClickTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qApp->installEventFilter(&filter); }
    void theWayBackFromAResultKeepsTheForm_data();
    void theWayBackFromAResultKeepsTheForm();
    void aTileOpensThePreviewAndPressesNoneOfItsButtons_data();
    void aTileOpensThePreviewAndPressesNoneOfItsButtons();
    void aSlowSecondClickPressesTheButtonOfThePreview();
    void closingThePreviewOpensNoOther_data();
    void closingThePreviewOpensNoOther();
    void closingTheAlertPressesNothingBelow();

private:
    static void doubleClick(QWidget &window, QPoint position)
    {
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, position);
    }
    static QPoint centerOf(QWidget *widget) { return placement::inWindow(widget).center(); }
    static void openHistory(HistoryScreen &screen);

    ClickFilter filter;
};

namespace
{

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

} // namespace

void DoubleClickTest::theWayBackFromAResultKeepsTheForm_data()
{
    QTest::addColumn<QSize>("size");
    for (const CoverSize &size : CoverSize::presets()) {
        QTest::newRow(qPrintable(size.name))
            << QSize(static_cast<int>(size.width), static_cast<int>(size.height)) / 8;
    }
}

void DoubleClickTest::theWayBackFromAResultKeepsTheForm()
{
    QFETCH(const QSize, size);
    GenerateScreen screen{GenerateScreen::answerWithPicture(size)};
    const QStringList chosen = chosenOptions(screen.window);
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"返回表单"_s));
    doubleClick(screen.window, centerOf(screen.find(u"返回表单"_s)));
    QTRY_VERIFY(screen.generateButton() != nullptr);
    QCOMPARE(chosenOptions(screen.window), chosen);
    QCOMPARE(screen.panels.referencePanelCount(), 0);
}

void DoubleClickTest::openHistory(HistoryScreen &screen)
{
    constexpr int covers = 16;
    screen.addCovers(covers);
    // So large that tiles lie below all of the preview.
    screen.open({1400, 1080});
}

namespace
{

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

void DoubleClickTest::aTileOpensThePreviewAndPressesNoneOfItsButtons_data()
{
    QTest::addColumn<QString>("below");
    for (const QString &name : {u"保存图片"_s, u"关闭预览"_s, u"关闭"_s}) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void DoubleClickTest::aTileOpensThePreviewAndPressesNoneOfItsButtons()
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

void DoubleClickTest::aSlowSecondClickPressesTheButtonOfThePreview()
{
    HistoryScreen screen;
    openHistory(screen);
    const QPoint place = placeInPreview(screen, u"保存图片"_s);
    QVERIFY(scrollTileUnder(screen, place));
    for (int count = 0; count < 2; ++count) {
        // Between the two lies more than the interval of a double click.
        QTest::mouseClick(screen.window.windowHandle(), Qt::LeftButton, {}, place);
    }
    QCOMPARE(screen.panels.proposedNames().size(), 1);
}

void DoubleClickTest::closingThePreviewOpensNoOther_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("button") << u"关闭预览"_s;
    QTest::newRow("symbol") << u"关闭"_s;
}

void DoubleClickTest::closingThePreviewOpensNoOther()
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

void DoubleClickTest::closingTheAlertPressesNothingBelow()
{
    QWidget window;
    int clicks = 0;
    auto *below = new QPushButton{&window};
    connect(below, &QPushButton::clicked, this, [&clicks] { ++clicks; });
    showWindow(window, {1000, 700});
    below->setGeometry(window.rect());
    AlertPanel::open(u"已保存"_s, {}, u"好的"_s, &window);
    doubleClick(window, centerOf(accessible::find(openSheet(), u"好的"_s)));
    QTRY_VERIFY(openSheet() == nullptr);
    QCOMPARE(clicks, 0);
}

int main(int argc, char **argv)
{
    return runScreenTest<DoubleClickTest>(argc, argv);
}
#include "DoubleClickTest.moc"
