#include "platform/Timestamp.h"

#include "support/TestProgram.h"

#include <QDateTime>
#include <QTest>

#include <cmath>
#include <ctime>
#include <limits>

using namespace Qt::StringLiterals;
using namespace quilmora;

namespace {

Timestamp local(int hour, int minute, int second, double fraction)
{
    const QDateTime moment{QDate{2025, 3, 2}, QTime{hour, minute, second}};
    return fromSecondsSince1970(static_cast<double>(moment.toSecsSinceEpoch()) + fraction);
}

} // namespace

class TimestampTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        QTest::addColumn<double>("fraction");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::newRow("file name") << 0.0 << u"yyyyMMdd_HHmmss"_s << u"20250302_140307"_s;
        QTest::newRow("tile") << 0.0 << u"MM-dd HH:mm"_s << u"03-02 14:03"_s;
        QTest::newRow("preview") << 0.0 << u"yyyy-MM-dd HH:mm"_s << u"2025-03-02 14:03"_s;
        QTest::newRow("the last moment of a second")
            << 0.9999 << u"yyyyMMdd_HHmmss"_s << u"20250302_140307"_s;
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

QUILMORA_TEST(TimestampTest, quilmora::test::runCoreTest)
#include "TimestampTest.moc"
