#include "ui/theme/Symbol.h"

#include "support/ScreenTest.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// The opacities along a row or column of the pixels of a picture.
QList<int> opacities(const QImage &picture, bool isRow, int place)
{
    QList<int> list;
    for (int i = 0; i < (isRow ? picture.width() : picture.height()); ++i) {
        list.append(isRow ? qAlpha(picture.pixel(i, place)) : qAlpha(picture.pixel(place, i)));
    }
    return list;
}

QImage symbolIn(const Symbol &symbol, QSizeF bounds, double ratio)
{
    QImage picture{(bounds * ratio).toSize(), QImage::Format_ARGB32_Premultiplied};
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter{&picture};
    symbol.draw(painter, QRectF{{}, bounds}, Qt::black);
    return picture;
}

/// In pixels; without what hardly shows.
QRect inkOf(const QImage &picture)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > 100) {
                ink |= QRect{x, y, 1, 1};
            }
        }
    }
    return ink;
}

} // namespace

/// How symbols lie on the pixels of the screen, each test at every usual resolution.
class SymbolTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
            QTest::addRow("%g", ratio) << ratio;
        }
    }

    void straightStrokesCoverWholePixels()
    {
        QFETCH_GLOBAL(const double, ratio);
        struct Strokes {
            QString name;
            int pixelSize;
            QFont::Weight weight;
            // Where a row and a column cross the drawing's straight sides, as parts of its height and width.
            double row;
            double column;
        };
        constexpr double none = -1;
        const QList<Strokes> symbols{
            {u"tv"_s, 16, QFont::Medium, 0.4, 0.5},
            {u"macwindow"_s, 16, QFont::Medium, 0.6, 0.7},
            {u"iphone"_s, 16, QFont::Medium, 0.5, 0.33},
            {u"iphone.gen3"_s, 16, QFont::Medium, 0.5, none},
            {u"square.and.arrow.up"_s, 22, QFont::Normal, 0.57, none},
            {u"rectangle.grid.3x2"_s, 13, QFont::Medium, 0.25, 0.5},
        };
        for (const auto &[name, pixelSize, weight, row, column] : symbols) {
            const Symbol symbol{name, pixelSize, weight};
            // Wide enough to be moved by the half of a pixel and not.
            for (const int width : {60, 61}) {
                const QImage whole = symbolIn(symbol, QSizeF(width, 60), ratio);
                const QImage picture = whole.copy(inkOf(whole).adjusted(-1, -1, 1, 1));
                QList<int> seen = opacities(picture, true, static_cast<int>(picture.height() * row));
                if (column > 0) {
                    seen += opacities(picture, false, static_cast<int>(picture.width() * column));
                }
                QVERIFY(seen.contains(255));
                const auto between = std::find_if(seen.begin(), seen.end(),
                                                  [](int opacity) { return opacity > 2 && opacity < 253; });
                QVERIFY2(between == seen.end(),
                         qPrintable(name + u": %1 at %2"_s.arg(*between).arg(between - seen.begin())));
            }
        }
    }

    void theInkIsInTheMiddle()
    {
        QFETCH_GLOBAL(const double, ratio);
        for (const QString &name : {u"tv"_s, u"macwindow"_s, u"iphone"_s, u"iphone.gen3"_s}) {
            for (const int width : {120, 121, 122, 123}) {
                const QImage card = symbolIn(Symbol{name, 16, QFont::Medium}, QSizeF(width, 21), ratio);
                const QRect ink = inkOf(card);
                const double middle = width * ratio / 2;
                QVERIFY2(
                    std::abs(ink.left() + ink.width() / 2.0 - middle) <= 0.25,
                    qPrintable(name +
                               u": %1 + %2 / 2, middle %3"_s.arg(ink.left()).arg(ink.width()).arg(middle)));
            }
        }
    }

    void theListIsAsHighAsTheGearAndTheDotsOfTheWindowAreApart()
    {
        QFETCH_GLOBAL(const double, ratio);
        const auto heightOf = [&](const QString &name) {
            return inkOf(symbolIn(Symbol{name, 13, QFont::Medium}, {17, 17}, ratio)).height();
        };
        QVERIFY(std::abs(heightOf(u"rectangle.grid.3x2"_s) - heightOf(u"gearshape"_s)) <= 1);
        for (const int width : {120, 121}) {
            const QImage card = symbolIn(Symbol{u"macwindow"_s, 16, QFont::Medium}, QSizeF(width, 21), ratio);
            const QRect ink = inkOf(card);
            const QImage picture = card.copy(ink.adjusted(-1, 0, 1, 0));
            // Both sides of the window and three dots in one of the rows above its line.
            int most = 0;
            for (int y = 0; y < picture.height() / 2; ++y) {
                const QList<int> row = opacities(picture, true, y);
                int rises = 0;
                for (qsizetype x = 1; x < row.size(); ++x) {
                    rises += row[x - 1] < 60 && row[x] > 150 ? 1 : 0;
                }
                most = std::max(most, rises);
            }
            QCOMPARE(most, 5);
        }
    }
};

QUILMORA_TEST(SymbolTest, runScreenTest)
#include "SymbolTest.moc"
