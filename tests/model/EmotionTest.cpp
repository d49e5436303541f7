#include "model/Emotion.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

class EmotionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereAreTwelvePresetsInTheGivenOrder();
    void thePresetsAreMadeOnce();
    void theNameIsTheIdentity();
    void theNameDecidesEqualityAndHash();
    void onlyTheExactTextIsTheCustomEntry_data();
    void onlyTheExactTextIsTheCustomEntry();
};

void EmotionTest::thereAreTwelvePresetsInTheGivenOrder()
{
    const QStringList expected{u"震惊"_s, u"惊喜"_s, u"灿烂微笑"_s, u"大笑"_s, u"兴奋"_s, u"胜利"_s,
                               u"调皮"_s, u"坚定"_s, u"怀疑"_s,     u"困惑"_s, u"无语"_s, u"自定义..."_s};
    QStringList names;
    for (const Emotion &preset : Emotion::presets()) {
        names.append(preset.name);
    }
    QCOMPARE(names.size(), 12);
    QCOMPARE(names, expected);
}

void EmotionTest::thePresetsAreMadeOnce()
{
    QCOMPARE(&Emotion::presets(), &Emotion::presets());
}

void EmotionTest::theNameIsTheIdentity()
{
    QSet<QString> ids;
    for (const Emotion &preset : Emotion::presets()) {
        QCOMPARE(preset.id(), preset.name);
        ids.insert(preset.id());
    }
    QCOMPARE(ids.size(), 12);
}

void EmotionTest::theNameDecidesEqualityAndHash()
{
    const Emotion same{u"震惊"_s};
    QVERIFY(same == Emotion::presets().constFirst());
    QCOMPARE(qHash(same), qHash(Emotion::presets().constFirst()));
    QVERIFY(same != Emotion::presets().constLast());
    QVERIFY(qHash(same) != qHash(Emotion::presets().constLast()));
    const QSet<Emotion> emotions{Emotion::presets().cbegin(), Emotion::presets().cend()};
    QCOMPARE(emotions.size(), 12);
    QVERIFY(emotions.contains(same));
}

void EmotionTest::onlyTheExactTextIsTheCustomEntry_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isCustom");
    QTest::newRow("three full stops") << u"自定义..."_s << true;
    QTest::newRow("an ellipsis character") << u"自定义…"_s << false;
    QTest::newRow("no stops") << u"自定义"_s << false;
    QTest::newRow("two full stops") << u"自定义.."_s << false;
    QTest::newRow("four full stops") << u"自定义...."_s << false;
    QTest::newRow("Chinese full stops") << u"自定义。。。"_s << false;
    QTest::newRow("a blank behind") << u"自定义... "_s << false;
    QTest::newRow("empty") << QString{} << false;
    QTest::newRow("another preset") << u"震惊"_s << false;
}

void EmotionTest::onlyTheExactTextIsTheCustomEntry()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isCustom);
    QCOMPARE(Emotion{name}.isCustom(), isCustom);
    QCOMPARE(Emotion{name} == Emotion::presets().constLast(), isCustom);
}

QTEST_GUILESS_MAIN(EmotionTest)
#include "EmotionTest.moc"
