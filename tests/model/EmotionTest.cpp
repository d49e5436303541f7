#include "model/Emotion.h"

#include "support/TestProgram.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

class EmotionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePresetsStandInTheGivenOrder()
    {
        const QStringList expected{u"震惊"_s, u"惊喜"_s, u"灿烂微笑"_s, u"大笑"_s, u"兴奋"_s, u"胜利"_s,
                                   u"调皮"_s, u"坚定"_s, u"怀疑"_s,     u"困惑"_s, u"无语"_s, u"自定义..."_s};
        QStringList names;
        for (const Emotion &preset : Emotion::presets()) {
            QCOMPARE(preset.id(), preset.name);
            names.append(preset.name);
        }
        QCOMPARE(names, expected);
        QCOMPARE(&Emotion::presets(), &Emotion::presets());
    }

    void theNameDecidesEqualityAndHash()
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

    void onlyTheExactTextIsTheCustomEntry()
    {
        QVERIFY(Emotion{u"自定义..."_s}.isCustom());
        QVERIFY(Emotion::presets().constLast().isCustom());
        for (const QString &name : {u"自定义…"_s, u"自定义"_s, u"自定义.."_s, u"自定义...."_s,
                                    u"自定义。。。"_s, u"自定义... "_s, u""_s, u"震惊"_s}) {
            QVERIFY2(!Emotion{name}.isCustom(), qPrintable(name));
            QVERIFY2(Emotion{name} != Emotion::presets().constLast(), qPrintable(name));
        }
    }
};

QUILMORA_TEST(EmotionTest, quilmora::test::runCoreTest)
#include "EmotionTest.moc"
