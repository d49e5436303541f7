#include "imaging/PngFilter.h"

#include "support/TestProgram.h"

#include <QByteArray>
#include <QSet>

#include <cstdlib>
#include <random>

using namespace quilmora;
using namespace quilmora::test;

namespace {

/// The same as the format's definition has it, byte by byte.
int predicted(int type, int left, int up, int upLeft)
{
    switch (type) {
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
    for (char type = 0; type < 5; ++type) {
        FilteredRow trial{QByteArray(1, type), 0};
        for (qsizetype i = 0; i < row.size(); ++i) {
            const auto at = [i, pixelBytes](const QByteArray &bytes, bool left) {
                const qsizetype position = left ? i - pixelBytes : i;
                return position < 0 ? 0 : static_cast<int>(static_cast<uchar>(bytes.at(position)));
            };
            const int prediction = predicted(type, at(row, true), at(above, false), at(above, true));
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
    void everyRowIsFilteredByTheBestType()
    {
        for (const Rows kind : {Rows::noise, Rows::slope, Rows::copies, Rows::extremes}) {
            for (const qsizetype pixelBytes : {1, 2, 3, 4, 6, 8}) {
                // Below, at and above the lengths in which vectors and blocks work.
                for (const qsizetype pixels :
                     {1, 2, 3, 5, 15, 16, 17, 85, 86, 127, 128, 129, 255, 256, 257, 600}) {
                    const QString difference = differenceOf(kind, pixels * pixelBytes, pixelBytes);
                    QVERIFY2(difference.isEmpty(), qPrintable(difference));
                }
            }
        }
        // Each of the five types was the best one somewhere.
        QCOMPARE(m_types.size(), 5);
    }

private:
    /// Filters rows and compares them with filteredByHand(); empty when they are equal.
    QString differenceOf(Rows kind, qsizetype length, qsizetype pixelBytes)
    {
        PngFilter filter{length, pixelBytes};
        QByteArray above(length, '\0');
        for (int y = 0; y < 4; ++y) {
            const QByteArray row = arbitraryRow(kind, length, y, m_random);
            std::copy(row.begin(), row.end(), filter.row());
            QByteArray filtered(length + 1, 'x');
            const quint64 sum = filter.filterTo(static_cast<uchar *>(static_cast<void *>(filtered.data())));
            const FilteredRow expected = filteredByHand(row, above, pixelBytes);
            if (filtered != expected.bytes || sum != expected.sum) {
                return QStringLiteral("kind %1, %2 bytes a pixel, %3 bytes, row %4")
                    .arg(static_cast<int>(kind))
                    .arg(pixelBytes)
                    .arg(length)
                    .arg(y);
            }
            m_types.insert(expected.bytes.at(0));
            above = row;
        }
        return {};
    }

    std::mt19937 m_random{7};
    QSet<char> m_types;
};

QUILMORA_TEST(PngFilterTest, runCoreTest)
#include "PngFilterTest.moc"
