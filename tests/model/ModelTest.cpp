#include "model/CoverInputs.h"
#include "model/HistoryRecord.h"
#include "support/FailureNote.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <optional>
#include <utility>

using namespace quilmora;
using namespace quilmora::test;

/// The cover sizes and the emotions that the user chooses from, and the pictures of the history.
class ModelTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSizesStandInTheGivenOrder()
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

    void everyFieldOfASizeCountsForEqualityAndHash()
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

    void theEmotionsStandInTheGivenOrder()
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

    void theNameOfAnEmotionDecidesEqualityAndHash()
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

    void init() { m_home.emplace(); }

    void aPathWithATildeIsReadInTheHome()
    {
        for (const QString &name : {u"Pictures/Quilmora/coverimg/cover_20250302_140327_4821.png"_s,
                                    u"图片/it's \"mine\" 😀 .png"_s, u"~/odd~.png"_s}) {
            const FailureNote note{name.toUtf8()};
            samplePictures::write(m_home->path(name), samplePictures::png(m_image));
            QCOMPARE(recordOf(u"~/"_s + name).image(), m_image);
            QCOMPARE(recordOf(m_home->path(name)).image(), m_image);
        }
    }

    void aRelativePathIsReadInTheCurrentFolder()
    {
        samplePictures::write(m_home->path(u"~/odd~.png"_s), samplePictures::png(m_image));
        const QString formerFolder = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_home->path(u"~"_s)));
        const QImage image = recordOf(u"odd~.png"_s).image();
        QVERIFY(QDir::setCurrent(formerFolder));
        QCOMPARE(image, m_image);
    }

    void theImageIsReadAfreshEachTime()
    {
        const HistoryRecord record = recordOf(u"~/a.png"_s);
        QVERIFY(record.image().isNull());
        const QString path = samplePictures::write(m_home->path(u"a.png"_s), samplePictures::png(m_image));
        QCOMPARE(record.image(), m_image);
        const QImage other = samplePictures::picture({40, 30}, Qt::blue);
        QVERIFY(other != m_image);
        samplePictures::write(path, samplePictures::png(other));
        QCOMPARE(record.image(), other);
        QVERIFY(QFile::remove(path));
        QVERIFY(record.image().isNull());
    }

    void whatIsNoPictureGivesNoImageAndPrintsNothing()
    {
        const QString path = samplePictures::write(m_home->path(u"a.png"_s), "这不是图片\n");
        for (const QString &wrong : {path, u"~/a.png"_s, u"~/missing.png"_s, u"~"_s, u""_s}) {
            QImage image = m_image;
            QCOMPARE(standardOutputOf([&] { image = recordOf(wrong).image(); }), QByteArray{});
            QVERIFY2(image.isNull(), qPrintable(wrong));
        }
    }

private:
    static HistoryRecord recordOf(const QString &imagePath)
    {
        return {1, u"提示词"_s, imagePath, fromSecondsSince1970(1700000000.5), u"m"_s};
    }

    std::optional<TemporaryHome> m_home;
    const QImage m_image = samplePictures::picture({40, 30});
};

QUILMORA_TEST(ModelTest, runCoreTest)
#include "ModelTest.moc"
