#include "platform/Timestamp.h"
#include "store/SqliteConnection.h"
#include "support/TestProgram.h"

#include <QDateTime>

#include <cmath>
#include <ctime>
#include <limits>
#include <random>

using namespace quilmora;
using namespace quilmora::test;

namespace {

Timestamp local(int hour, int minute, int second, double fraction)
{
    const QDateTime moment{QDate{2025, 3, 2}, QTime{hour, minute, second}};
    return fromSecondsSince1970(static_cast<double>(moment.toSecsSinceEpoch()) + fraction);
}

} // namespace

/// Numbers and moments, as they are stored and shown.
class FormatsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextIsTheShortestWithAPoint_data()
    {
        const DataRows<double, QString> row{"value", "text"};
        row("whole seconds", 1700000000.0, u"1700000000.0"_s);
        row("a half", 1700000000.5, u"1700000000.5"_s);
        row("microseconds", 1700000000.123456, u"1700000000.123456"_s);
        row("nought", 0.0, u"0.0"_s);
        row("minus nought", -0.0, u"-0.0"_s);
        row("one", 1.0, u"1.0"_s);
        row("a tenth", 0.1, u"0.1"_s);
        row("a sum that is no tenth", 0.1 + 0.2, u"0.30000000000000004"_s);
        row("a third", 1.0 / 3.0, u"0.3333333333333333"_s);
        row("before 1970", -1.5, u"-1.5"_s);
        row("small", 1e-7, u"0.0000001"_s);
        row("large", 1e21, u"1000000000000000000000.0"_s);
        row("beyond whole numbers", 9007199254740993.0, u"9007199254740992.0"_s);
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

    void init()
    {
        qputenv("TZ", "Asia/Shanghai");
        tzset();
    }

    void secondsComeBackExactly()
    {
        for (const double seconds : {0.0, 1700000000.0, 1700000000.123456, -1.5, 1e-7, 1e21}) {
            QVERIFY(secondsSince1970(fromSecondsSince1970(seconds)) == seconds);
        }
    }

    void nowIsThePresentWithFractions()
    {
        // Qt rounds to milliseconds, up as well since version 6.8.
        const double before = static_cast<double>(QDateTime::currentMSecsSinceEpoch() - 1) / 1000.0;
        const double moment = secondsSince1970(now());
        const double after = static_cast<double>(QDateTime::currentMSecsSinceEpoch() + 1) / 1000.0;
        QVERIFY(before <= moment && moment <= after);
        // All of ten moments on whole milliseconds would mean that the fraction was truncated.
        int betweenMilliseconds = 0;
        for (int i = 0; i < 10; ++i) {
            const double milliseconds = secondsSince1970(now()) * 1000.0;
            betweenMilliseconds += std::abs(milliseconds - std::round(milliseconds)) > 0.001 ? 1 : 0;
        }
        QVERIFY(betweenMilliseconds > 0);
    }

    void datesAreWrittenAfterThePattern_data()
    {
        const DataRows<double, QString, QString> row{"fraction", "pattern", "text"};
        row("file name", 0.0, u"yyyyMMdd_HHmmss"_s, u"20250302_140307"_s);
        row("tile", 0.0, u"MM-dd HH:mm"_s, u"03-02 14:03"_s);
        row("preview", 0.0, u"yyyy-MM-dd HH:mm"_s, u"2025-03-02 14:03"_s);
        row("the last moment of a second", 0.9999, u"yyyyMMdd_HHmmss"_s, u"20250302_140307"_s);
    }

    void datesAreWrittenAfterThePattern()
    {
        QFETCH(const double, fraction);
        QFETCH(const QString, pattern);
        QFETCH(const QString, text);
        QCOMPARE(localDateText(local(14, 3, 7, fraction), pattern), text);
    }

    void datesFollowTheTimeZone()
    {
        const Timestamp moment = fromSecondsSince1970(1700000000.0);
        QCOMPARE(localDateText(moment, u"yyyy-MM-dd HH:mm"_s), u"2023-11-15 06:13"_s);
        qputenv("TZ", "America/New_York");
        tzset();
        QCOMPARE(localDateText(moment, u"yyyy-MM-dd HH:mm"_s), u"2023-11-14 17:13"_s);
        QCOMPARE(localDateText(fromSecondsSince1970(-0.5), u"yyyyMMdd_HHmmss"_s), u"19691231_185959"_s);
    }

    void aMomentBeyondTheCalendarHasNoText()
    {
        for (const double seconds : {1e21, -1e21, std::numeric_limits<double>::infinity(),
                                     std::numeric_limits<double>::quiet_NaN()}) {
            QCOMPARE(localDateText(fromSecondsSince1970(seconds), u"yyyy-MM-dd HH:mm"_s), QString{});
        }
    }
};

QUILMORA_TEST(FormatsTest, runCoreTest)
#include "FormatsTest.moc"
