#include "HistoryScreen.h"
#include "screens/common/PictureView.h"
#include "screens/common/Theme.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ShadowFall.h"

#include <QDateTime>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

/// The numbers of the preview, opened from the history as the user opens it and read from what is drawn.
class PreviewMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { screen.reset(); }
    void sizeAndBackdrop();
    void texts();
    void places();
    void pictureFitsItsBox_data();
    void pictureFitsItsBox();
    void pictureCornersAndShadow();
    void buttons_data();
    void buttons();

private:
    void open(QSize picture, const QString &prompt = u"提示词"_s);
    static QWidget *piece(const QString &name) { return accessible::find(HistoryScreen::preview(), name); }
    static QWidget *sheet() { return piece(u"关闭"_s)->parentWidget(); }

    std::unique_ptr<HistoryScreen> screen;
};

namespace
{

QString metaLine()
{
    return u"模型 · 2025-03-05 09:07"_s;
}

} // namespace

void PreviewMeasuresTest::open(QSize picture, const QString &prompt)
{
    screen->writeCover(u"a.png"_s, picture, Qt::red);
    screen->addRow(prompt, u"~/Pictures/Quilmora/coverimg/a.png"_s,
                   static_cast<double>(QDateTime{{2025, 3, 5}, {9, 7, 3}}.toSecsSinceEpoch()), u"模型"_s);
    screen->open({1100, 860});
    screen->clickTile(0);
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
}

void PreviewMeasuresTest::sizeAndBackdrop()
{
    open({1600, 900});
    QCOMPARE(sheet()->size(), QSize(900, 760));
    const QImage seen = screenCapture::capture(sheet());
    // Black at 92 % leaves 8 % of the window's background.
    const int left = qRound(0xEC * 0.08);
    for (const QPoint place : {QPoint{20, 380}, QPoint{450, 15}, QPoint{880, 740}}) {
        QVERIFY(screenCapture::isClose(seen.pixelColor(place), QColor{left, left, left}, 1));
    }
}

void PreviewMeasuresTest::texts()
{
    const QString prompt = u"甲\n乙\n丙\n丁"_s;
    open({1600, 900}, prompt);
    const Drawing drawn{sheet()};
    const QColor faint = srgb(1, 1, 1, 0.7);
    for (const QString &line : {u"甲"_s, u"乙"_s, u"丙…"_s}) {
        QCOMPARE(drawn.lookOf(line), Drawing::look(14, QFont::Normal, Qt::white));
        QVERIFY(placement::centredAcross(drawn.placeOf(line), sheet()->rect()));
    }
    QVERIFY(drawn.placeOf(u"丁"_s).isNull());
    QCOMPARE(drawn.lookOf(metaLine()), Drawing::look(11, QFont::Normal, faint));
    QVERIFY(placement::centredAcross(piece(metaLine())->geometry(), sheet()->rect()));
    QVERIFY(!drawn.symbol(u"xmark.circle.fill"_s, 22, QFont::Normal, faint).isNull());
}

void PreviewMeasuresTest::places()
{
    const QString prompt = u"很长的提示词"_s.repeated(100);
    open({1600, 900}, prompt);
    const QWidget *close = piece(u"关闭"_s);
    QWidget *picture = piece(u"封面"_s);
    const QWidget *save = piece(u"保存图片"_s);
    const QWidget *end = piece(u"关闭预览"_s);
    QCOMPARE(900 - close->geometry().right() - 1, 40 + 8);
    QVERIFY(close->y() >= 40);
    QCOMPARE(placement::gapBelow(close, picture), 18);
    QCOMPARE(placement::gapBelow(picture, piece(prompt)), 18);
    QCOMPARE(placement::gapBelow(piece(prompt), piece(metaLine())), 6);
    QCOMPARE(placement::gapBelow(piece(metaLine()), save), 18 + 6);
    QCOMPARE(placement::gapBeside(save, end), 14);
    QVERIFY(760 - end->geometry().bottom() - 1 >= 40);
    // The prompt keeps 40 and 24 away from the sides, whatever its length.
    QCOMPARE(piece(prompt)->x(), 40 + 24);
    QCOMPARE(900 - piece(prompt)->geometry().right() - 1, 40 + 24);
    const Drawing drawn{sheet()};
    for (const DrawnText &line : drawn.texts()) {
        QVERIFY2(line.box.left() >= 64 && line.box.right() <= 900 - 64, qPrintable(line.text));
    }
    // All of it in the middle.
    QVERIFY(std::abs(close->y() - (760 - end->geometry().bottom() - 1)) <= 1);
}

void PreviewMeasuresTest::pictureFitsItsBox_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSizeF>("shown");
    QTest::newRow("small landscape") << QSize{32, 18} << QSizeF{800, 450};
    QTest::newRow("large landscape") << QSize{1600, 900} << QSizeF{800, 450};
    QTest::newRow("very wide") << QSize{1600, 200} << QSizeF{800, 100};
    QTest::newRow("portrait") << QSize{90, 160} << QSizeF{303.75, 540};
}

void PreviewMeasuresTest::pictureFitsItsBox()
{
    QFETCH(const QSize, picture);
    QFETCH(const QSizeF, shown);
    open(picture);
    const Drawing own{piece(u"封面"_s)};
    QCOMPARE(own.pixmaps().size(), 1);
    const QSizeF size = own.pixmaps().constFirst().place.size();
    // As high as its box, or as the sheet leaves room below the other items.
    const int others = sheet()->height() - 2 * 40 - 2 * 18 -
                       (piece(u"关闭"_s)->height() + piece(u"关闭预览"_s)->geometry().bottom() + 1 -
                        piece(u"提示词"_s)->y());
    const QSizeF expected = shown.height() <= others ? shown : shown.scaled(800, others, Qt::KeepAspectRatio);
    QVERIFY2(std::abs(size.width() - expected.width()) <= 1, qPrintable(QString::number(size.width())));
    QVERIFY2(std::abs(size.height() - expected.height()) <= 1, qPrintable(QString::number(size.height())));
}

void PreviewMeasuresTest::pictureCornersAndShadow()
{
    open({1600, 900});
    QWidget *picture = piece(u"封面"_s);
    const Drawing own{picture};
    const QImage pixels = own.pixmaps().constFirst().pixmap.toImage();
    QCOMPARE(CornerShape{pixels.copy(0, 0, pixels.width() / 2, pixels.height())}.differenceFromCircle(10),
             QString{});
    const QRectF place = own.pixmaps().constFirst().place.translated(picture->pos());
    QCOMPARE(shadowDifference(Drawing{sheet()}, place, {srgb(0, 0, 0, 0.6), 14, {0, 6}}), QString{});
}

void PreviewMeasuresTest::buttons_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("icon");
    QTest::newRow("save") << u"保存图片"_s << u"square.and.arrow.down"_s;
    QTest::newRow("close") << u"关闭预览"_s << u"xmark"_s;
}

void PreviewMeasuresTest::buttons()
{
    QFETCH(const QString, title);
    QFETCH(const QString, icon);
    open({1600, 900});
    QWidget *button = piece(title);
    const Drawing drawn{button};
    QCOMPARE(drawn.lookOf(title), Drawing::look(14, QFont::DemiBold, Qt::white));
    const QRectF symbol = drawn.symbol(icon, 14, QFont::DemiBold, Qt::white);
    QVERIFY(!symbol.isNull());
    const QRectF text = drawn.placeOf(title);
    QCOMPARE(qRound(text.left() - symbol.right()), 6);
    QCOMPARE(placement::padding(button->rect(), symbol.united(text)), u"22, 11, 22, 11"_s);
    QCOMPARE(CornerShape{button}.differenceFromContinuous(button->height() / 2.0), QString{});
    QCOMPARE(shadowDifference(Drawing{sheet()}, button->geometry(), {srgb(0.45, 0.35, 0.95, 0.3), 6, {0, 3}},
                              true),
             QString{});
}

int main(int argc, char **argv)
{
    return runScreenTest<PreviewMeasuresTest>(argc, argv);
}
#include "PreviewMeasuresTest.moc"
