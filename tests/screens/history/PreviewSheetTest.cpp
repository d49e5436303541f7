#include "HistoryScreen.h"
#include "screens/common/Theme.h"
#include "support/ScreenCapture.h"

#include <QAbstractButton>
#include <QMouseEvent>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class PreviewSheetTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { screen.reset(); }
    void aClickAnywhereOnATileOpensThePreview_data();
    void aClickAnywhereOnATileOpensThePreview();
    void aClickBetweenTilesOpensNothing();
    void aPressThatIsLetGoOnAnotherTileOpensNothing();
    void theRightButtonOpensNothing();
    void thePreviewFitsIntoTheWindow_data();
    void thePreviewFitsIntoTheWindow();
    void itsCornersAreAsDarkAsTheRest();
    void everyWayOfClosingLetsTheNextPreviewOpen_data();
    void everyWayOfClosingLetsTheNextPreviewOpen();
    void theListIsNotReadAnewWhenThePreviewCloses();
    void aDoubleClickOpensOnePreviewThatStays();
    void leavingTheScreenTakesThePreviewAlong();

private:
    void openPreview(int position);

    std::unique_ptr<HistoryScreen> screen;
};

void PreviewSheetTest::init()
{
    screen = std::make_unique<HistoryScreen>();
    screen->addCovers(6);
    screen->open();
}

void PreviewSheetTest::openPreview(int position)
{
    screen->clickTile(position);
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
}

void PreviewSheetTest::aClickAnywhereOnATileOpensThePreview_data()
{
    QTest::addColumn<QPointF>("place"); // In shares of the tile's width and height.
    QTest::newRow("the picture") << QPointF{0.5, 0.4};
    QTest::newRow("the band above it") << QPointF{0.5, 0.02};
    QTest::newRow("the top left corner") << QPointF{0.0, 0.0};
    QTest::newRow("the prompt") << QPointF{0.1, 0.82};
    QTest::newRow("bare ground beside the prompt") << QPointF{0.95, 0.82};
    QTest::newRow("the bottom right corner") << QPointF{0.999, 0.999};
}

void PreviewSheetTest::aClickAnywhereOnATileOpensThePreview()
{
    QFETCH(const QPointF, place);
    const QRect tile = screen->tileRect(1);
    const QPoint clicked =
        tile.topLeft() + QPointF{place.x() * tile.width(), place.y() * tile.height()}.toPoint();
    QTest::mouseClick(screen->grid()->viewport(), Qt::LeftButton, {},
                      {std::min(clicked.x(), tile.right()), std::min(clicked.y(), tile.bottom())});
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
    QVERIFY(accessible::find(HistoryScreen::preview(), u"提示词 1.png"_s) != nullptr);
    QVERIFY(accessible::find(HistoryScreen::preview(), u"封面"_s) != nullptr);
}

void PreviewSheetTest::aClickBetweenTilesOpensNothing()
{
    const QRect tile = screen->tileRect(0);
    QTest::mouseClick(screen->grid()->viewport(), Qt::LeftButton, {}, {tile.right() + 8, tile.center().y()});
    QTest::mouseClick(screen->grid()->viewport(), Qt::LeftButton, {}, {10, tile.center().y()});
    QVERIFY(HistoryScreen::preview() == nullptr);
}

void PreviewSheetTest::aPressThatIsLetGoOnAnotherTileOpensNothing()
{
    QTest::mousePress(screen->grid()->viewport(), Qt::LeftButton, {}, screen->tileRect(0).center());
    QTest::mouseRelease(screen->grid()->viewport(), Qt::LeftButton, {}, screen->tileRect(1).center());
    QVERIFY(HistoryScreen::preview() == nullptr);
}

void PreviewSheetTest::theRightButtonOpensNothing()
{
    QTest::mouseClick(screen->grid()->viewport(), Qt::RightButton, {}, screen->tileRect(0).center());
    QVERIFY(HistoryScreen::preview() == nullptr);
}

void PreviewSheetTest::thePreviewFitsIntoTheWindow_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QSize>("preview");
    QTest::newRow("a large window") << QSize{1300, 900} << QSize{900, 760};
    QTest::newRow("just as large") << QSize{900, 760} << QSize{900, 760};
    QTest::newRow("lower") << QSize{1000, 700} << QSize{900, 700};
    QTest::newRow("low") << QSize{1024, 560} << QSize{900, 560};
    QTest::newRow("narrow") << QSize{640, 800} << QSize{640, 760};
}

void PreviewSheetTest::thePreviewFitsIntoTheWindow()
{
    QFETCH(const QSize, window);
    QFETCH(const QSize, preview);
    openPreview(0);
    screen->window.resize(window);
    QTRY_COMPARE(HistoryScreen::preview()->size(), window);
    QWidget *view = accessible::find(HistoryScreen::preview(), u"关闭"_s)->parentWidget();
    QCOMPARE(view->size(), preview);
    QCOMPARE(view->pos(),
             QPoint((window.width() - preview.width()) / 2, (window.height() - preview.height()) / 2));
    for (const QString &name : {u"关闭"_s, u"封面"_s, u"提示词 0.png"_s, u"保存图片"_s, u"关闭预览"_s}) {
        const QWidget *piece = accessible::find(view, name);
        QVERIFY2(view->rect().contains(piece->geometry()), qPrintable(name));
        QVERIFY2(!piece->geometry().isEmpty(), qPrintable(name));
    }
}

void PreviewSheetTest::itsCornersAreAsDarkAsTheRest()
{
    Theme::current().setScheme(ColorScheme::light);
    openPreview(1);
    QWidget *view = accessible::find(HistoryScreen::preview(), u"关闭"_s)->parentWidget();
    const QImage picture = screenCapture::capture(view);
    const int darkest = qGray(picture.pixel(20, 20));
    int soft = 0;
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 12; ++x) {
            const QColor color = picture.pixelColor(x, y);
            soft += color.alpha() > 0 && color.alpha() < 255 ? 1 : 0;
            // Of what is almost clear the colour is known only roughly.
            constexpr int roughness = 3 * 255;
            QVERIFY((qGray(color.rgb()) - darkest) * color.alpha() <= roughness);
        }
    }
    QVERIFY(soft > 0);
}

void PreviewSheetTest::everyWayOfClosingLetsTheNextPreviewOpen_data()
{
    QTest::addColumn<QString>("way");
    for (const auto *way : {"symbol", "button", "backdrop", "escape", "window"}) {
        QTest::newRow(way) << QString::fromLatin1(way);
    }
}

void PreviewSheetTest::everyWayOfClosingLetsTheNextPreviewOpen()
{
    QFETCH(const QString, way);
    openPreview(0);
    const QPointer<Sheet> sheet = HistoryScreen::preview();
    if (way == u"symbol"_s) {
        click(accessible::find(sheet, u"关闭"_s));
    } else if (way == u"button"_s) {
        click(accessible::find(sheet, u"关闭预览"_s));
    } else if (way == u"backdrop"_s) {
        QWidget *view = accessible::find(sheet, u"关闭"_s)->parentWidget();
        QTest::mouseClick(view, Qt::LeftButton, {}, {12, 400});
    } else if (way == u"escape"_s) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    } else {
        sheet->close();
    }
    QTRY_VERIFY(sheet == nullptr);
    openPreview(2);
    QVERIFY(accessible::find(HistoryScreen::preview(), u"提示词 2.png"_s) != nullptr);
}

void PreviewSheetTest::theListIsNotReadAnewWhenThePreviewCloses()
{
    openPreview(0);
    screen->addRow(u"新"_s, {}, 2.0e9);
    click(accessible::find(HistoryScreen::preview(), u"关闭预览"_s));
    QTRY_VERIFY(HistoryScreen::preview() == nullptr);
    QCOMPARE(screen->grid()->model()->rowCount(), 6);
}

void PreviewSheetTest::aDoubleClickOpensOnePreviewThatStays()
{
    openPreview(0);
    const QPointer<Sheet> sheet = HistoryScreen::preview();
    screen->clickTile(1);
    QCOMPARE(HistoryScreen::preview(), sheet.data());
    QCOMPARE(screen->window.findChildren<Sheet *>().size(), 1);
}

void PreviewSheetTest::leavingTheScreenTakesThePreviewAlong()
{
    openPreview(0);
    const QPointer<Sheet> sheet = HistoryScreen::preview();
    screen->view.reset();
    QVERIFY(sheet == nullptr);
}

int main(int argc, char **argv)
{
    return runScreenTest<PreviewSheetTest>(argc, argv);
}
#include "PreviewSheetTest.moc"
