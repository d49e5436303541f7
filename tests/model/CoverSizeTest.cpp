#include "model/CoverSize.h"

#include "support/TestProgram.h"

#include <QSet>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;

class CoverSizeTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePresetsStandInTheGivenOrder()
    {
        const QList<CoverSize> expected{
            {u"YouTube"_s, u"16:9"_s, u"tv"_s, 2848, 1600},
            {u"经典"_s, u"4:3"_s, u"macwindow"_s, 2304, 1728},
            {u"小红书"_s, u"3:4"_s, u"iphone"_s, 1728, 2304},
            {u"抖音 / TikTok"_s, u"9:16"_s, u"iphone.gen3"_s, 1600, 2848},
        };
        QCOMPARE(CoverSize::presets().size(), expected.size());
        for (qsizetype i = 0; i < expected.size(); ++i) {
            const CoverSize &preset = CoverSize::presets().at(i);
            QCOMPARE(preset.name, expected.at(i).name);
            QCOMPARE(preset.ratio, expected.at(i).ratio);
            QCOMPARE(preset.iconName, expected.at(i).iconName);
            QCOMPARE(preset.width, expected.at(i).width);
            QCOMPARE(preset.height, expected.at(i).height);
            QCOMPARE(preset.id(), expected.at(i).name);
        }
        QCOMPARE(&CoverSize::presets(), &CoverSize::presets());
    }

    void everyFieldCountsForEqualityAndHash()
    {
        constexpr qint64 large = 9007199254740993;
        const CoverSize &first = CoverSize::presets().constFirst();
        const CoverSize same{u"YouTube"_s, u"16:9"_s, u"tv"_s, 2848, 1600};
        QVERIFY(same == first);
        QCOMPARE(qHash(same), qHash(first));
        QCOMPARE(qHash(same, 99), qHash(first, 99));
        const QList<std::pair<const char *, CoverSize>> others{
            {"name", {u"Other"_s, u"16:9"_s, u"tv"_s, 2848, 1600}},
            {"ratio", {u"YouTube"_s, u"9:16"_s, u"tv"_s, 2848, 1600}},
            {"icon", {u"YouTube"_s, u"16:9"_s, u"iphone"_s, 2848, 1600}},
            {"width", {u"YouTube"_s, u"16:9"_s, u"tv"_s, 2849, 1600}},
            {"height", {u"YouTube"_s, u"16:9"_s, u"tv"_s, 2848, 1601}},
            {"large width", {u"YouTube"_s, u"16:9"_s, u"tv"_s, large, 1600}},
            {"large width, one less", {u"YouTube"_s, u"16:9"_s, u"tv"_s, large - 1, 1600}},
        };
        QSet<CoverSize> sizes{same, first};
        for (const auto &[difference, other] : others) {
            QVERIFY2(other != first, difference);
            QVERIFY2(qHash(other) != qHash(first), difference);
            sizes.insert(other);
        }
        QCOMPARE(sizes.size(), 1 + others.size());
    }
};

QUILMORA_TEST(CoverSizeTest, quilmora::test::runCoreTest)
#include "CoverSizeTest.moc"
