#include "platform/PngFilter.h"

#include <QByteArray>
#include <QTest>

#include <array>
#include <cstdlib>
#include <random>

using namespace quilmora;

namespace
{

/// The same as the format's definition has it, byte by byte.
int predicted(int way, int left, int up, int upLeft)
{
    switch (way) {
    case 1:
        return left;
    case 2:
        return up;
    case 3:
        return (left + up) / 2;
    case 4: {
        const int estimate = left + up - upLeft;
        const int fromLeft = std::abs(estimate - left);
        const int fromUp = std::abs(estimate - up);
        const int fromUpLeft = std::abs(estimate - upLeft);
        if (fromLeft <= fromUp && fromLeft <= fromUpLeft) {
            return left;
        }
        return fromUp <= fromUpLeft ? up : upLeft;
    }
    default:
        return 0;
    }
}

struct FilteredRow {
    QByteArray bytes;
    quint64 sum;
};

FilteredRow filteredByHand(const QByteArray &row, const QByteArray &above, qsizetype pixelBytes)
{
    FilteredRow best{{}, std::numeric_limits<quint64>::max()};
    for (char way = 0; way < 5; ++way) {
        FilteredRow trial{QByteArray(1, way), 0};
        for (qsizetype i = 0; i < row.size(); ++i) {
            const auto at = [i, pixelBytes](const QByteArray &bytes, bool left) {
                const qsizetype position = left ? i - pixelBytes : i;
                return position < 0 ? 0 : static_cast<int>(static_cast<uchar>(bytes.at(position)));
            };
            const int prediction = predicted(way, at(row, true), at(above, false), at(above, true));
            const auto residue = static_cast<signed char>(at(row, false) - prediction);
            trial.bytes += static_cast<char>(residue);
            trial.sum += static_cast<quint64>(std::abs(int{residue}));
        }
        if (trial.sum < best.sum) {
            best = trial;
        }
    }
    return best;
}

enum class Rows { noise, slope, copies, extremes };

QByteArray arbitraryRow(Rows kind, qsizetype length, int y, std::mt19937 &random)
{
    QByteArray row(length, '\0');
    for (qsizetype i = 0; i < length; ++i) {
        const auto any = static_cast<int>(random() % 256U);
        switch (kind) {
        case Rows::noise:
            row[i] = static_cast<char>(any);
            break;
        case Rows::slope:
            row[i] = static_cast<char>(i / 3 + y + y + any % 3);
            break;
        case Rows::copies:
            row[i] = static_cast<char>(i * i + any % 2);
            break;
        case Rows::extremes:
            row[i] = static_cast<char>(any < 128 ? 0x00 : (any < 192 ? 0x80 : 0xff));
            break;
        }
    }
    return row;
}

} // namespace

class PngFilterTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRowIsFilteredInTheBestWay_data();
    void everyRowIsFilteredInTheBestWay();
    void everyWayIsTaken();
};

void PngFilterTest::everyRowIsFilteredInTheBestWay_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<qsizetype>("pixelBytes");
    const std::array<std::pair<const char *, Rows>, 4> kinds{{{"noise", Rows::noise},
                                                              {"slope", Rows::slope},
                                                              {"copies", Rows::copies},
                                                              {"extremes", Rows::extremes}}};
    for (const auto &[name, kind] : kinds) {
        for (const qsizetype pixelBytes : {1, 2, 3, 4, 6, 8}) {
            QTest::addRow("%s, %d bytes a pixel", name, static_cast<int>(pixelBytes))
                << static_cast<int>(kind) << pixelBytes;
        }
    }
}

void PngFilterTest::everyRowIsFilteredInTheBestWay()
{
    QFETCH(const int, kind);
    QFETCH(const qsizetype, pixelBytes);
    std::mt19937 random{7};
    // Below, at and above the lengths in which vectors and blocks work.
    for (const qsizetype pixels : {1, 2, 3, 5, 15, 16, 17, 85, 86, 127, 128, 129, 255, 256, 257, 600}) {
        const qsizetype length = pixels * pixelBytes;
        PngFilter filter{length, pixelBytes};
        QByteArray above(length, '\0');
        for (int y = 0; y < 4; ++y) {
            const QByteArray row = arbitraryRow(static_cast<Rows>(kind), length, y, random);
            std::copy(row.begin(), row.end(), filter.row());
            QByteArray filtered(length + 1, 'x');
            const quint64 sum = filter.filterTo(static_cast<uchar *>(static_cast<void *>(filtered.data())));
            const FilteredRow expected = filteredByHand(row, above, pixelBytes);
            QCOMPARE(filtered, expected.bytes);
            QCOMPARE(sum, expected.sum);
            above = row;
        }
    }
}

void PngFilterTest::everyWayIsTaken()
{
    // What the comparison above is worth: that each of the five is the best one somewhere.
    std::array<int, 5> taken{};
    std::mt19937 random{7};
    for (const Rows kind : {Rows::noise, Rows::slope, Rows::copies, Rows::extremes}) {
        QByteArray above(90, '\0');
        for (int y = 0; y < 40; ++y) {
            const QByteArray row = arbitraryRow(kind, above.size(), y, random);
            ++taken.at(static_cast<std::size_t>(filteredByHand(row, above, 3).bytes.at(0)));
            above = row;
        }
    }
    for (const int count : taken) {
        QVERIFY(count > 0);
    }
}

QTEST_GUILESS_MAIN(PngFilterTest)
#include "PngFilterTest.moc"
