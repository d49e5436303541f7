#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/HistoryScreen.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ShadowProfile.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/ElidedText.h"

#include <QDateTime>

#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

namespace {

const QString metaLine = u"模型 · 2025-03-05 09:07"_s;

} // namespace

/// The preview as the user opens it from the history, and its numbers, read from what is drawn.
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

    void aClickAnywhereOnATileOpensThePreview()
    {
        // The picture, the band above it, a corner, the prompt, bare ground beside it, the opposite corner:
        // in shares of the tile's width and height.
        for (const QPointF place : {QPointF{0.5, 0.4}, QPointF{0.5, 0.02}, QPointF{0, 0}, QPointF{0.1, 0.82},
                                    QPointF{0.95, 0.82}, QPointF{0.999, 0.999}}) {
            const QRect tile = m_screen->tileRect(1);
            const QPoint clicked =
                tile.topLeft() + QPointF{place.x() * tile.width(), place.y() * tile.height()}.toPoint();
            QTest::mouseClick(m_screen->grid()->viewport(), Qt::LeftButton, {},
                              {std::min(clicked.x(), tile.right()), std::min(clicked.y(), tile.bottom())});
            QTRY_VERIFY2(openSheet() != nullptr, qPrintable(QString::number(place.y())));
            QVERIFY(piece(u"提示词 1.png"_s) != nullptr);
            QVERIFY(piece(texts::cover) != nullptr);
            QVERIFY(HistoryScreen::closesPreview());
        }
        // Other presses open nothing.
        QTest::mousePress(m_screen->grid()->viewport(), Qt::LeftButton, {}, m_screen->tileRect(0).center());
        QTest::mouseRelease(m_screen->grid()->viewport(), Qt::LeftButton, {}, m_screen->tileRect(1).center());
        QTest::mouseClick(m_screen->grid()->viewport(), Qt::RightButton, {}, m_screen->tileRect(0).center());
        QVERIFY(openSheet() == nullptr);
    }

    void thePreviewFitsIntoTheWindow()
    {
        QVERIFY(m_screen->opensPreview(0));
        const QList<std::pair<QSize, QSize>> sizes{{{1300, 900}, {900, 760}},
                                                   {{900, 760}, {900, 760}},
                                                   {{1000, 700}, {900, 700}},
                                                   {{1024, 560}, {900, 560}},
                                                   {{640, 800}, {640, 760}}};
        for (const auto &[window, preview] : sizes) {
            m_screen->window.resize(window);
            QTRY_COMPARE(openSheet()->size(), window);
            QCOMPARE(sheet()->size(), preview);
            QCOMPARE(sheet()->pos(), QPoint((window.width() - preview.width()) / 2,
                                            (window.height() - preview.height()) / 2));
            for (const QString &name :
                 {texts::close, texts::cover, u"提示词 0.png"_s, texts::savePicture, texts::closePreview}) {
                QVERIFY2(sheet()->rect().contains(piece(name)->geometry()), qPrintable(name));
                QVERIFY2(!piece(name)->geometry().isEmpty(), qPrintable(name));
            }
        }
    }

    void itsCornersAreAsDarkAsTheRest()
    {
        Theme::current().setScheme(ColorScheme::light);
        QVERIFY(m_screen->opensPreview(1));
        const QImage picture = screenCapture::capture(sheet());
        const int darkest = qGray(picture.pixel(20, 20));
        const auto isSoft = [](const QColor &color) {
            return color.alpha() > 0 && color.alpha() < 255;
        };
        // Of what is almost clear the color is known only roughly.
        const auto isLighter = [darkest](const QColor &color) {
            return (qGray(color.rgb()) - darkest) * color.alpha() > 3 * 255;
        };
        QVERIFY(screenCapture::countIf(picture, isSoft, {0, 0, 12, 12}) > 0);
        QCOMPARE(screenCapture::countIf(picture, isLighter, {0, 0, 12, 12}), 0);
    }

    void theNextPreviewOpensAfterOneWasClosed()
    {
        const QList<std::function<void()>> ways{
            [] { click(piece(texts::close)); },
            [] { click(piece(texts::closePreview)); },
            [] {
                QTest::mouseClick(sheet(), Qt::LeftButton, {}, {12, 400});
            },
            [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape); },
            [] { openSheet()->close(); },
        };
        for (qsizetype way = 0; way < ways.size(); ++way) {
            QVERIFY(m_screen->opensPreview(0));
            const QPointer<Sheet> former = openSheet();
            ways.at(way)();
            QTRY_VERIFY2(former == nullptr, qPrintable(QString::number(way)));
            QVERIFY(m_screen->opensPreview(2));
            QVERIFY(piece(u"提示词 2.png"_s) != nullptr);
            QVERIFY(HistoryScreen::closesPreview());
        }
        // The list is not read anew.
        QVERIFY(m_screen->opensPreview(0));
        m_screen->addRow(u"新"_s, {}, 2.0e9);
        click(piece(texts::closePreview));
        QTRY_VERIFY(openSheet() == nullptr);
        QCOMPARE(m_screen->grid()->model()->rowCount(), 6);
    }

    void aTilePressedBelowThePreviewOpensNoOther()
    {
        QVERIFY(m_screen->opensPreview(0));
        const QPointer<Sheet> first = openSheet();
        m_screen->clickTile(1);
        m_screen->tile(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
        QCOMPARE(openSheet(), first.data());
        QCOMPARE(m_screen->window.findChildren<Sheet *>().size(), 1);
        // Leaving the screen takes it along.
        m_screen->view.reset();
        QVERIFY(first == nullptr);
    }

    void textsAndBackdrop()
    {
        open({1600, 900}, u"甲\n乙\n丙\n丁"_s);
        QCOMPARE(sheet()->size(), QSize(900, 760));
        const QImage seen = screenCapture::capture(sheet());
        // Black at 92 % leaves 8 % of the window's background.
        const int left = qRound(0xEC * 0.08);
        for (const QPoint place : {QPoint{5, 380}, QPoint{450, 5}, QPoint{880, 740}}) {
            QVERIFY(screenCapture::isClose(seen.pixelColor(place), QColor{left, left, left}, 1));
        }
        const Drawing drawn{sheet()};
        const QColor faint = srgb(1, 1, 1, 0.7);
        for (const QString &line : {u"甲"_s, u"乙"_s, u"丙…"_s}) {
            QCOMPARE(drawn.lookOf(line), Drawing::look(14, QFont::Normal, Qt::white));
            QVERIFY(placement::centredAcross(drawn.placeOf(line), sheet()->rect()));
        }
        QVERIFY(drawn.placeOf(u"丁"_s).isNull());
        QCOMPARE(drawn.lookOf(metaLine), Drawing::look(11, QFont::Normal, faint));
        QVERIFY(placement::centredAcross(piece(metaLine)->geometry(), sheet()->rect()));
        QVERIFY(!drawn.symbol(u"xmark.circle.fill"_s, 22, QFont::Normal, faint).isNull());
    }

    void places()
    {
        const QString prompt = u"很长的提示词"_s.repeated(100);
        open({1600, 900}, prompt);
        const QWidget *close = piece(texts::close);
        QWidget *picture = piece(texts::cover);
        const QWidget *save = piece(texts::savePicture);
        const QWidget *end = piece(texts::closePreview);
        QCOMPARE(900 - close->geometry().right() - 1, 40 + 8);
        QVERIFY(close->y() >= 40);
        QCOMPARE(placement::gapBelow(close, picture), 18);
        QCOMPARE(placement::gapBelow(picture, piece(prompt)), 18);
        QCOMPARE(placement::gapBelow(piece(prompt), piece(metaLine)), 6);
        QCOMPARE(placement::gapBelow(piece(metaLine), save), 18 + 6);
        QCOMPARE(placement::gapBeside(save, end), 14);
        QVERIFY(760 - end->geometry().bottom() - 1 >= 40);
        // The prompt keeps 40 and 24 away from the sides, whatever its length.
        QCOMPARE(piece(prompt)->x(), 40 + 24);
        QCOMPARE(900 - piece(prompt)->geometry().right() - 1, 40 + 24);
        const Drawing drawn{sheet()};
        for (const DrawnText &line : drawn.texts()) {
            QVERIFY2(line.box.left() >= 64 && line.box.right() <= 900 - 64, qPrintable(line.text));
        }
        QCOMPARE(piece(prompt)->height(), ElidedText::heightOfLines(systemFont(14), 3));
        // All of it in the middle.
        QVERIFY(placement::centredAcross(picture->geometry(), sheet()->rect()));
        QVERIFY(placement::centredAcross(save->geometry() | end->geometry(), sheet()->rect()));
        QVERIFY(std::abs(close->y() - (760 - end->geometry().bottom() - 1)) <= 1);
    }

    void pictureFitsItsBox()
    {
        const QList<std::pair<QSize, QSizeF>> sizes{{{32, 18}, {800, 450}},     {{1600, 900}, {800, 450}},
                                                    {{2304, 1728}, {720, 540}}, {{1600, 200}, {800, 100}},
                                                    {{4000, 100}, {800, 20}},   {{90, 160}, {303.75, 540}}};
        for (const auto &[picture, shown] : sizes) {
            open(picture);
            const Drawing own{piece(texts::cover)};
            QCOMPARE(own.pixmaps().size(), 1);
            const QSizeF size = own.pixmaps().constFirst().place.size();
            // As high as its box, or as the sheet leaves below the other items.
            const int others =
                sheet()->height() - 2 * 40 - 2 * 18 -
                (piece(texts::close)->height() + piece(texts::closePreview)->geometry().bottom() + 1 -
                 piece(u"提示词"_s)->y());
            const QSizeF expected =
                shown.height() <= others ? shown : shown.scaled(800, others, Qt::KeepAspectRatio);
            QVERIFY2(std::abs(size.width() - expected.width()) <= 1,
                     qPrintable(QString::number(size.width())));
            QVERIFY2(std::abs(size.height() - expected.height()) <= 1,
                     qPrintable(QString::number(size.height())));
            QVERIFY(HistoryScreen::closesPreview());
        }
    }

    void pictureAndButtons()
    {
        open({1600, 900});
        QWidget *picture = piece(texts::cover);
        const Drawing own{picture};
        QCOMPARE(CornerShape{own.pixmaps().constFirst().leftHalf()}.differenceFromCircle(10), QString{});
        const QRectF place = own.pixmaps().constFirst().place.translated(picture->pos());
        QCOMPARE(shadowDifference(Drawing{sheet()}, place, {srgb(0, 0, 0, 0.6), 14, {0, 6}}), QString{});
        const QList<std::pair<QString, QString>> all{{texts::savePicture, u"square.and.arrow.down"_s},
                                                     {texts::closePreview, u"xmark"_s}};
        for (const auto &[title, icon] : all) {
            QWidget *button = piece(title);
            const Drawing drawn{button};
            QCOMPARE(drawn.lookOf(title), Drawing::look(14, QFont::DemiBold, Qt::white));
            const QRectF symbol = drawn.symbol(icon, 14, QFont::DemiBold, Qt::white);
            QVERIFY(!symbol.isNull());
            const QRectF text = drawn.placeOf(title);
            QCOMPARE(qRound(text.left() - symbol.right()), 6);
            QCOMPARE(placement::padding(button->rect(), symbol.united(text)), u"22, 11, 22, 11"_s);
            QCOMPARE(CornerShape{button}.differenceFromContinuous(button->height() / 2.0), QString{});
            QCOMPARE(shadowDifference(Drawing{sheet()}, button->geometry(),
                                      {srgb(0.45, 0.35, 0.95, 0.3), 6, {0, 3}}, true),
                     QString{});
        }
    }

private:
    void open(QSize picture, const QString &prompt = u"提示词"_s)
    {
        m_screen->writeCover(u"a.png"_s, picture, Qt::red);
        m_screen->addRow(prompt, HistoryScreen::storedPath(u"a.png"_s),
                         static_cast<double>(QDateTime{{2025, 3, 5}, {9, 7, 3}}.toSecsSinceEpoch()),
                         u"模型"_s);
        m_screen->window.resize(1100, 860);
        m_screen->refresh();
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(m_screen->opensPreview(0));
    }

    static QWidget *piece(const QString &name) { return HistoryScreen::inPreview(name); }
    static QWidget *sheet() { return piece(texts::close)->parentWidget(); }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(PreviewSheetTest, runScreenTest)
#include "PreviewSheetTest.moc"
