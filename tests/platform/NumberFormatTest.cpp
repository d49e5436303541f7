#include "platform/NumberFormat.h"

#include "support/TestProgram.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <random>

using namespace Qt::StringLiterals;
using namespace quilmora;

class NumberFormatTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextIsTheShortestWithAPoint_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole seconds") << 1700000000.0 << u"1700000000.0"_s;
        QTest::newRow("a half") << 1700000000.5 << u"1700000000.5"_s;
        QTest::newRow("microseconds") << 1700000000.123456 << u"1700000000.123456"_s;
        QTest::newRow("nought") << 0.0 << u"0.0"_s;
        QTest::newRow("minus nought") << -0.0 << u"-0.0"_s;
        QTest::newRow("one") << 1.0 << u"1.0"_s;
        QTest::newRow("a tenth") << 0.1 << u"0.1"_s;
        QTest::newRow("a sum that is no tenth") << 0.1 + 0.2 << u"0.30000000000000004"_s;
        QTest::newRow("a third") << 1.0 / 3.0 << u"0.3333333333333333"_s;
        QTest::newRow("before 1970") << -1.5 << u"-1.5"_s;
        QTest::newRow("small") << 1e-7 << u"0.0000001"_s;
        QTest::newRow("large") << 1e21 << u"1000000000000000000000.0"_s;
        QTest::newRow("beyond whole numbers") << 9007199254740993.0 << u"9007199254740992.0"_s;
    }

    void theTextIsTheShortestWithAPoint()
    {
        QFETCH(const double, value);
        QFETCH(const QString, text);
        QCOMPARE(shortestDecimal(value), text);
    }

    void theTextReadsBackAsTheSameNumber()
    {
        using Limits = std::numeric_limits<double>;
        for (const double value : {Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
                                   -Limits::denorm_min(), 1e-300, 1e23, std::nextafter(1700000000.0, 2e9)}) {
            const QString text = shortestDecimal(value);
            bool isNumber = false;
            // Not QCOMPARE, which allows a small difference.
            QVERIFY2(text.toDouble(&isNumber) == value, qPrintable(text));
            QVERIFY2(isNumber, qPrintable(text));
            QVERIFY2(!text.contains(u'e', Qt::CaseInsensitive), qPrintable(text));
            QVERIFY2(text.count(u'.') == 1, qPrintable(text));
        }
        std::mt19937_64 random{20240229};
        std::uniform_real_distribution<double> moments{0.0, 4102444800.0};
        for (int i = 0; i < 2000; ++i) {
            const double moment = moments(random);
            const QString text = shortestDecimal(moment);
            QVERIFY2(text.toDouble() == moment, qPrintable(text));
            QVERIFY2(text.size() <= 18, qPrintable(text));
        }
    }
};

QUILMORA_TEST(NumberFormatTest, quilmora::test::runCoreTest)
#include "NumberFormatTest.moc"
