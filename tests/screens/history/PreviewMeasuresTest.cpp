#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/HistoryScreen.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ShadowProfile.h"
#include "support/TestProgram.h"
#include "ui/theme/Fonts.h"
#include "ui/widgets/ElidedText.h"

#include <QDateTime>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

namespace {

QString metaLine()
{
    return u"模型 · 2025-03-05 09:07"_s;
}

} // namespace

/// The numbers of the preview, opened from the history as the user opens it and read from what is drawn.
class PreviewMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void sizeAndBackdrop()
    {
        open({1600, 900});
        QCOMPARE(sheet()->size(), QSize(900, 760));
        const QImage seen = screenCapture::capture(sheet());
        // Black at 92 % leaves 8 % of the window's background.
        const int left = qRound(0xEC * 0.08);
        for (const QPoint place : {QPoint{5, 380}, QPoint{450, 5}, QPoint{880, 740}}) {
            QVERIFY(screenCapture::isClose(seen.pixelColor(place), QColor{left, left, left}, 1));
        }
    }

    void texts()
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
        QCOMPARE(piece(prompt)->height(), ElidedText::heightOfLines(systemFont(14), 3));
        // All of it in the middle.
        QVERIFY(placement::centredAcross(picture->geometry(), sheet()->rect()));
        QVERIFY(placement::centredAcross(save->geometry() | end->geometry(), sheet()->rect()));
        QVERIFY(std::abs(close->y() - (760 - end->geometry().bottom() - 1)) <= 1);
    }

    void pictureFitsItsBox_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QSizeF>("shown");
        QTest::newRow("small landscape") << QSize{32, 18} << QSizeF{800, 450};
        QTest::newRow("large landscape") << QSize{1600, 900} << QSizeF{800, 450};
        QTest::newRow("4:3") << QSize{2304, 1728} << QSizeF{720, 540};
        QTest::newRow("very wide") << QSize{1600, 200} << QSizeF{800, 100};
        QTest::newRow("a line") << QSize{4000, 100} << QSizeF{800, 20};
        QTest::newRow("portrait") << QSize{90, 160} << QSizeF{303.75, 540};
    }

    void pictureFitsItsBox()
    {
        QFETCH(const QSize, picture);
        QFETCH(const QSizeF, shown);
        open(picture);
        const Drawing own{piece(texts::cover)};
        QCOMPARE(own.pixmaps().size(), 1);
        const QSizeF size = own.pixmaps().constFirst().place.size();
        // As high as its box, or as the sheet leaves below the other items.
        const int others = sheet()->height() - 2 * 40 - 2 * 18 -
                           (piece(texts::close)->height() + piece(texts::closePreview)->geometry().bottom() +
                            1 - piece(u"提示词"_s)->y());
        const QSizeF expected =
            shown.height() <= others ? shown : shown.scaled(800, others, Qt::KeepAspectRatio);
        QVERIFY2(std::abs(size.width() - expected.width()) <= 1, qPrintable(QString::number(size.width())));
        QVERIFY2(std::abs(size.height() - expected.height()) <= 1,
                 qPrintable(QString::number(size.height())));
    }

    void pictureCornersAndShadow()
    {
        open({1600, 900});
        QWidget *picture = piece(texts::cover);
        const Drawing own{picture};
        QCOMPARE(CornerShape{own.pixmaps().constFirst().leftHalf()}.differenceFromCircle(10), QString{});
        const QRectF place = own.pixmaps().constFirst().place.translated(picture->pos());
        QCOMPARE(shadowDifference(Drawing{sheet()}, place, {srgb(0, 0, 0, 0.6), 14, {0, 6}}), QString{});
    }

    void buttons()
    {
        open({1600, 900});
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
        m_screen->open({1100, 860});
        QVERIFY(m_screen->opensPreview(0));
    }

    static QWidget *piece(const QString &name) { return HistoryScreen::inPreview(name); }
    static QWidget *sheet() { return piece(texts::close)->parentWidget(); }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(PreviewMeasuresTest, runScreenTest)
#include "PreviewMeasuresTest.moc"
