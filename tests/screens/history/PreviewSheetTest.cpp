#include "support/HistoryScreen.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"
#include "ui/theme/Theme.h"

#include <QAbstractButton>

#include <functional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class PreviewSheetTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_screen = std::make_unique<HistoryScreen>();
        m_screen->addCovers(6);
        m_screen->open();
    }

    void cleanup() { m_screen.reset(); }

    void aClickAnywhereOnATileOpensThePreview_data()
    {
        QTest::addColumn<QPointF>("place"); // In shares of the tile's width and height.
        QTest::newRow("the picture") << QPointF{0.5, 0.4};
        QTest::newRow("the band above it") << QPointF{0.5, 0.02};
        QTest::newRow("the top left corner") << QPointF{0.0, 0.0};
        QTest::newRow("the prompt") << QPointF{0.1, 0.82};
        QTest::newRow("bare ground beside the prompt") << QPointF{0.95, 0.82};
        QTest::newRow("the bottom right corner") << QPointF{0.999, 0.999};
    }

    void aClickAnywhereOnATileOpensThePreview()
    {
        QFETCH(const QPointF, place);
        const QRect tile = m_screen->tileRect(1);
        const QPoint clicked =
            tile.topLeft() + QPointF{place.x() * tile.width(), place.y() * tile.height()}.toPoint();
        QTest::mouseClick(m_screen->grid()->viewport(), Qt::LeftButton, {},
                          {std::min(clicked.x(), tile.right()), std::min(clicked.y(), tile.bottom())});
        QTRY_VERIFY(HistoryScreen::preview() != nullptr);
        QVERIFY(HistoryScreen::inPreview(u"提示词 1.png"_s) != nullptr);
        QVERIFY(HistoryScreen::inPreview(texts::cover) != nullptr);
    }

    void otherPressesOpenNothing()
    {
        QTest::mousePress(m_screen->grid()->viewport(), Qt::LeftButton, {}, m_screen->tileRect(0).center());
        QTest::mouseRelease(m_screen->grid()->viewport(), Qt::LeftButton, {}, m_screen->tileRect(1).center());
        QTest::mouseClick(m_screen->grid()->viewport(), Qt::RightButton, {}, m_screen->tileRect(0).center());
        QVERIFY(HistoryScreen::preview() == nullptr);
    }

    void thePreviewFitsIntoTheWindow_data()
    {
        QTest::addColumn<QSize>("window");
        QTest::addColumn<QSize>("preview");
        QTest::newRow("a large window") << QSize{1300, 900} << QSize{900, 760};
        QTest::newRow("just as large") << QSize{900, 760} << QSize{900, 760};
        QTest::newRow("lower") << QSize{1000, 700} << QSize{900, 700};
        QTest::newRow("low") << QSize{1024, 560} << QSize{900, 560};
        QTest::newRow("narrow") << QSize{640, 800} << QSize{640, 760};
    }

    void thePreviewFitsIntoTheWindow()
    {
        QFETCH(const QSize, window);
        QFETCH(const QSize, preview);
        QVERIFY(m_screen->opensPreview(0));
        m_screen->window.resize(window);
        QTRY_COMPARE(HistoryScreen::preview()->size(), window);
        QWidget *view = HistoryScreen::inPreview(texts::close)->parentWidget();
        QCOMPARE(view->size(), preview);
        QCOMPARE(view->pos(),
                 QPoint((window.width() - preview.width()) / 2, (window.height() - preview.height()) / 2));
        for (const QString &name :
             {texts::close, texts::cover, u"提示词 0.png"_s, texts::savePicture, texts::closePreview}) {
            const QWidget *piece = accessible::find(view, name);
            QVERIFY2(view->rect().contains(piece->geometry()), qPrintable(name));
            QVERIFY2(!piece->geometry().isEmpty(), qPrintable(name));
        }
    }

    void itsCornersAreAsDarkAsTheRest()
    {
        Theme::current().setScheme(ColorScheme::light);
        QVERIFY(m_screen->opensPreview(1));
        QWidget *view = HistoryScreen::inPreview(texts::close)->parentWidget();
        const QImage picture = screenCapture::capture(view);
        const int darkest = qGray(picture.pixel(20, 20));
        int soft = 0;
        for (int y = 0; y < 12; ++y) {
            for (int x = 0; x < 12; ++x) {
                const QColor color = picture.pixelColor(x, y);
                soft += color.alpha() > 0 && color.alpha() < 255 ? 1 : 0;
                // Of what is almost clear the color is known only roughly.
                constexpr int roughness = 3 * 255;
                QVERIFY((qGray(color.rgb()) - darkest) * color.alpha() <= roughness);
            }
        }
        QVERIFY(soft > 0);
    }

    void theNextPreviewOpensAfterOneWasClosed_data()
    {
        QTest::addColumn<std::function<void(Sheet *)>>("close");
        const auto row = [](const char *name, const std::function<void(Sheet *)> &close) {
            QTest::newRow(name) << close;
        };
        row("symbol", [](Sheet *) { click(HistoryScreen::inPreview(texts::close)); });
        row("button", [](Sheet *) { click(HistoryScreen::inPreview(texts::closePreview)); });
        row("backdrop", [](Sheet *) {
            QTest::mouseClick(HistoryScreen::inPreview(texts::close)->parentWidget(), Qt::LeftButton, {},
                              {12, 400});
        });
        row("escape", [](Sheet *) { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape); });
        row("window", [](Sheet *sheet) { sheet->close(); });
    }

    void theNextPreviewOpensAfterOneWasClosed()
    {
        QFETCH(const std::function<void(Sheet *)>, close);
        QVERIFY(m_screen->opensPreview(0));
        const QPointer<Sheet> sheet = HistoryScreen::preview();
        close(sheet);
        QTRY_VERIFY(sheet == nullptr);
        QVERIFY(m_screen->opensPreview(2));
        QVERIFY(HistoryScreen::inPreview(u"提示词 2.png"_s) != nullptr);
    }

    void theListIsNotReadAnewWhenThePreviewCloses()
    {
        QVERIFY(m_screen->opensPreview(0));
        m_screen->addRow(u"新"_s, {}, 2.0e9);
        click(HistoryScreen::inPreview(texts::closePreview));
        QTRY_VERIFY(HistoryScreen::preview() == nullptr);
        QCOMPARE(m_screen->grid()->model()->rowCount(), 6);
    }

    void aTilePressedBelowThePreviewOpensNoOther()
    {
        QVERIFY(m_screen->opensPreview(0));
        const QPointer<Sheet> sheet = HistoryScreen::preview();
        m_screen->clickTile(1);
        m_screen->tile(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
        QCOMPARE(HistoryScreen::preview(), sheet.data());
        QCOMPARE(m_screen->window.findChildren<Sheet *>().size(), 1);
    }

    void leavingTheScreenTakesThePreviewAlong()
    {
        QVERIFY(m_screen->opensPreview(0));
        const QPointer<Sheet> sheet = HistoryScreen::preview();
        m_screen->view.reset();
        QVERIFY(sheet == nullptr);
    }

private:
    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(PreviewSheetTest, runScreenTest)
#include "PreviewSheetTest.moc"
