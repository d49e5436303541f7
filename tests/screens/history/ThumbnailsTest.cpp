#include "screens/history/ThumbnailCache.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"

#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

using State = ThumbnailCache::State;

namespace {

constexpr ThumbnailCache::Square square{100, 8, 1.0};

/// Of the pictures that are read in slices.
constexpr QSize size{400, 300};

} // namespace

/// The pictures of tiles: what is known of them, and how they are read.
class ThumbnailsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_cache = std::make_unique<ThumbnailCache>();
        m_reader = std::make_unique<ThumbnailReader>(*m_cache);
    }

    void cleanup() { m_home.reset(); }

    void aPictureIsFittedIntoTheSquare()
    {
        struct Fit {
            QSize side;
            double ratio;
            QSize pixels;
        };
        for (const auto &[side, ratio, pixels] :
             {Fit{{1600, 900}, 1.0, {100, 56}}, Fit{{900, 1600}, 1.0, {56, 100}},
              Fit{{1600, 900}, 2.0, {200, 112}}, Fit{{10, 5}, 1.5, {150, 75}},
              Fit{{1, 900}, 1.0, {1, 100}}}) {
            const QString path = writePicture(u"%1-%2.png"_s.arg(side.width()).arg(ratio), side);
            load(path, {100, 8, ratio});
            const QPixmap pixmap = m_cache->find(path, {100, 8, ratio}).pixmap;
            QCOMPARE(pixmap.size(), pixels);
            QCOMPARE(pixmap.devicePixelRatio(), ratio);
        }
    }

    void aPictureFollowsItsFileAndItsPlace()
    {
        const QString file = writePicture(u"a.png"_s, {16, 9});
        const QString path = u"~/a.png"_s;
        const auto state = [&](const ThumbnailCache::Square &place = square) {
            return m_cache->find(path, place).state;
        };
        QCOMPARE(state(), State::unknown);
        load(path, square);
        QCOMPARE(state(), State::ready);
        QVERIFY(!m_cache->find(path, square).pixmap.isNull());
        // Another size or resolution.
        QCOMPARE(state({120, 8, 1.0}), State::outdated);
        QCOMPARE(state({100, 8, 2.0}), State::outdated);
        QVERIFY(!m_cache->find(path, {120, 8, 1.0}).pixmap.isNull());
        load(path, {120, 8, 1.0});
        QCOMPARE(state({120, 8, 1.0}), State::ready);
        // A changed file.
        writePicture(u"a.png"_s, {9, 16});
        QCOMPARE(state(), State::unknown);
        QVERIFY(m_cache->find(path, square).pixmap.isNull());
        // A file that is gone is absent and forgotten.
        load(path, square);
        QVERIFY(m_cache->bytes() > 0);
        QVERIFY(QFile::remove(file));
        QCOMPARE(state(), State::absent);
        QCOMPARE(m_cache->bytes(), 0);
        load(path, square);
        QCOMPARE(state(), State::absent);
    }

    void whatIsNoPictureIsAbsentUntilTheFileChanges()
    {
        const QString path = samplePictures::write(m_home->path(u"a.png"_s), "text");
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
        load(path, square);
        QCOMPARE(m_cache->find(path, square).state, State::absent);
        writePicture(u"a.png"_s, {16, 9});
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
    }

    void whatWasNotUsedForTheLongestTimeGoesFirst()
    {
        // Each takes 4 MB, so that sixteen fit.
        constexpr ThumbnailCache::Square large{1024, 8, 1.0};
        constexpr int count = 18;
        QStringList paths;
        for (int number = 0; number < count; ++number) {
            paths += writePicture(u"%1.png"_s.arg(number), {8, 8});
            load(paths.last(), large);
        }
        QCOMPARE(m_cache->bytes(), qsizetype{count} * 1024 * 1024 * 4);
        const auto kept = [&] {
            QList<int> numbers;
            for (int number = 0; number < count; ++number) {
                if (m_cache->find(paths.at(number), large).state == State::ready) {
                    numbers.append(number);
                }
            }
            return numbers;
        };
        // What is in use stays beyond the bound.
        m_cache->trim({paths.begin(), paths.end()});
        QCOMPARE(kept().size(), count);
        QCOMPARE(m_cache->find(paths.at(0), large).state, State::ready);
        m_cache->trim({});
        QVERIFY(m_cache->bytes() <= ThumbnailCache::maximumBytes);
        QCOMPARE(kept(), (QList<int>{0, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}));
    }

    void aFileThatChangesMeanwhileIsReadAnew()
    {
        const QString path = write(u"a.png"_s, Qt::red);
        begin(path);
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
        write(u"a.png"_s, Qt::blue);
        QVERIFY(finish(path) > size.height());
        QCOMPARE(m_cache->find(path, square).state, State::ready);
        QCOMPARE(m_cache->find(path, square).pixmap.size(), QSize(100, 75));
        QCOMPARE(middle(path), QColor{Qt::blue});
        QCOMPARE(m_reader->currentPath(), QString{});
        // Another file in its place.
        const QString second = write(u"b.png"_s, Qt::blue);
        begin(second);
        QVERIFY(QFile::remove(second) && QFile::rename(write(u"c.png"_s, Qt::red), second));
        QVERIFY(finish(second) > size.height());
        QCOMPARE(middle(second), QColor{Qt::red});
    }

    void aFileThatGoesMeanwhileIsAbsent()
    {
        const QString path = write(u"a.png"_s, Qt::red);
        begin(path);
        QVERIFY(QFile::remove(path));
        QCOMPARE(finish(path), 1);
        QCOMPARE(m_cache->find(path, square).state, State::absent);
        QCOMPARE(m_reader->currentPath(), QString{});
    }

    void anotherPictureOrSquareTakesThePlaceOfWhatWasBegun()
    {
        const QString path = write(u"a.png"_s, Qt::red);
        const QString other = write(u"b.png"_s, Qt::blue);
        begin(path);
        finish(other);
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
        QCOMPARE(middle(other), QColor{Qt::blue});
        QVERIFY(finish(path) > size.height());
        QCOMPARE(middle(path), QColor{Qt::red});
        const QString third = write(u"c.png"_s, Qt::red);
        begin(third);
        constexpr ThumbnailCache::Square larger{200, 8, 1.0};
        finish(third, larger);
        QCOMPARE(m_cache->find(third, larger).state, State::ready);
        QCOMPARE(m_cache->find(third, larger).pixmap.size(), QSize(200, 150));
    }

private:
    QString writePicture(const QString &name, QSize side, const QColor &color = Qt::red) const
    {
        return samplePictures::writePng(m_home->path(name), samplePictures::plain(side, color));
    }

    QString write(const QString &name, const QColor &color) const { return writePicture(name, size, color); }

    void load(const QString &path, const ThumbnailCache::Square &place)
    {
        while (!m_reader->advance(path, place, QDeadlineTimer{QDeadlineTimer::Forever})) {
        }
    }

    /// Goes on with a picture for as many slices as lead into its middle.
    void begin(const QString &path)
    {
        for (int slice = 0; slice < size.height() / 2; ++slice) {
            QVERIFY(!m_reader->advance(path, square, QDeadlineTimer{0}));
        }
        QCOMPARE(m_reader->currentPath(), path);
    }

    /// Goes on to the end; gives the number of slices.
    int finish(const QString &path, const ThumbnailCache::Square &place = square)
    {
        int slices = 1;
        while (!m_reader->advance(path, place, QDeadlineTimer{0})) {
            ++slices;
        }
        return slices;
    }

    QColor middle(const QString &path) const
    {
        const QImage image = m_cache->find(path, square).pixmap.toImage();
        return image.pixelColor(image.rect().center());
    }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<ThumbnailCache> m_cache;
    std::unique_ptr<ThumbnailReader> m_reader;
};

QUILMORA_TEST(ThumbnailsTest, runScreenTest)
#include "ThumbnailsTest.moc"
