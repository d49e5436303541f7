#include "model/CoverSize.h"

#include <QSet>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;

class CoverSizeTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereAreFourPresetsInTheGivenOrder();
    void thePresetsAreMadeOnce();
    void portraitsAreLandscapesTurned();
    void theNameIsTheIdentity();
    void everyFieldCountsForEquality_data();
    void everyFieldCountsForEquality();
    void equalSizesHashAlike();
    void sizesServeAsKeys();
    void largeNumbersOfPixelsFit();
};

void CoverSizeTest::thereAreFourPresetsInTheGivenOrder()
{
    const QList<CoverSize> expected{
        {u"YouTube"_s, u"16:9"_s, u"tv"_s, 2848, 1600},
        {u"经典"_s, u"4:3"_s, u"macwindow"_s, 2304, 1728},
        {u"小红书"_s, u"3:4"_s, u"iphone"_s, 1728, 2304},
        {u"抖音 / TikTok"_s, u"9:16"_s, u"iphone.gen3"_s, 1600, 2848},
    };
    QCOMPARE(CoverSize::presets().size(), 4);
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const CoverSize &preset = CoverSize::presets().at(i);
        QCOMPARE(preset.name, expected.at(i).name);
        QCOMPARE(preset.ratio, expected.at(i).ratio);
        QCOMPARE(preset.iconName, expected.at(i).iconName);
        QCOMPARE(preset.width, expected.at(i).width);
        QCOMPARE(preset.height, expected.at(i).height);
    }
}

void CoverSizeTest::thePresetsAreMadeOnce()
{
    QCOMPARE(&CoverSize::presets(), &CoverSize::presets());
}

void CoverSizeTest::portraitsAreLandscapesTurned()
{
    const QList<CoverSize> &presets = CoverSize::presets();
    for (const auto &[landscape, portrait] : {std::pair{0, 3}, std::pair{1, 2}}) {
        QCOMPARE(presets.at(portrait).width, presets.at(landscape).height);
        QCOMPARE(presets.at(portrait).height, presets.at(landscape).width);
    }
}

void CoverSizeTest::theNameIsTheIdentity()
{
    QSet<QString> ids;
    for (const CoverSize &preset : CoverSize::presets()) {
        QCOMPARE(preset.id(), preset.name);
        ids.insert(preset.id());
    }
    QCOMPARE(ids.size(), 4);
    // Identity does not look at the rest, equality does.
    const CoverSize one{u"经典"_s, u"4:3"_s, u"macwindow"_s, 2304, 1728};
    const CoverSize other{u"经典"_s, u"4:3"_s, u"macwindow"_s, 4608, 3456};
    QCOMPARE(one.id(), other.id());
    QVERIFY(one != other);
}

void CoverSizeTest::everyFieldCountsForEquality_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ratio");
    QTest::addColumn<QString>("iconName");
    QTest::addColumn<qint64>("width");
    QTest::addColumn<qint64>("height");
    QTest::newRow("name") << u"Other"_s << u"16:9"_s << u"tv"_s << qint64{2848} << qint64{1600};
    QTest::newRow("ratio") << u"YouTube"_s << u"9:16"_s << u"tv"_s << qint64{2848} << qint64{1600};
    QTest::newRow("icon") << u"YouTube"_s << u"16:9"_s << u"iphone"_s << qint64{2848} << qint64{1600};
    QTest::newRow("width") << u"YouTube"_s << u"16:9"_s << u"tv"_s << qint64{2849} << qint64{1600};
    QTest::newRow("height") << u"YouTube"_s << u"16:9"_s << u"tv"_s << qint64{2848} << qint64{1601};
}

void CoverSizeTest::everyFieldCountsForEquality()
{
    QFETCH(const QString, name);
    QFETCH(const QString, ratio);
    QFETCH(const QString, iconName);
    QFETCH(const qint64, width);
    QFETCH(const qint64, height);
    const CoverSize changed{name, ratio, iconName, width, height};
    QVERIFY(changed != CoverSize::presets().constFirst());
    QVERIFY(qHash(changed) != qHash(CoverSize::presets().constFirst()));
}

void CoverSizeTest::equalSizesHashAlike()
{
    const CoverSize same{u"YouTube"_s, u"16:9"_s, u"tv"_s, 2848, 1600};
    QVERIFY(same == CoverSize::presets().constFirst());
    QCOMPARE(qHash(same), qHash(CoverSize::presets().constFirst()));
    QCOMPARE(qHash(same, 99), qHash(CoverSize::presets().constFirst(), 99));
}

void CoverSizeTest::sizesServeAsKeys()
{
    QSet<CoverSize> sizes{CoverSize::presets().cbegin(), CoverSize::presets().cend()};
    sizes.insert(CoverSize::presets().at(2));
    QCOMPARE(sizes.size(), 4);
    QVERIFY(sizes.contains({u"小红书"_s, u"3:4"_s, u"iphone"_s, 1728, 2304}));
    QVERIFY(!sizes.contains({u"小红书"_s, u"3:4"_s, u"iphone"_s, 2304, 1728}));
}

void CoverSizeTest::largeNumbersOfPixelsFit()
{
    constexpr qint64 large = 9007199254740993;
    const CoverSize size{u"x"_s, u"1:1"_s, u"tv"_s, large, -large};
    QCOMPARE(size.width, large);
    QCOMPARE(size.height, -large);
}

QTEST_GUILESS_MAIN(CoverSizeTest)
#include "CoverSizeTest.moc"
