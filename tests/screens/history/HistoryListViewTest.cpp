#include "support/DatabaseFile.h"
#include "support/HistoryScreen.h"
#include "support/PaintWatcher.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Where pixels are drawn along a row or a column of a picture: for each run its start and its length.
QList<QPoint> drawnRuns(const QImage &picture, int place, Qt::Orientation direction)
{
    const bool isRow = direction == Qt::Horizontal;
    return screenCapture::runs(isRow ? picture.width() : picture.height(), [&](int i) {
        return qAlpha(isRow ? picture.pixel(i, place) : picture.pixel(place, i)) > 0;
    });
}

/// Gives up the superuser's rights for a while; without effect on a process that has none.
class OrdinaryUser final
{
public:
    OrdinaryUser() { change(nobody); }
    Q_DISABLE_COPY_MOVE(OrdinaryUser)
    ~OrdinaryUser() { end(); }

    void end() const { change(m_self); }

private:
    void change(uid_t user) const
    {
        if (m_self == 0 && ::seteuid(user) != 0) {
            qFatal("Cannot change the user");
        }
    }

    static constexpr uid_t nobody = 65534;
    const uid_t m_self = ::getuid();
};

} // namespace

/// The list of covers, and what it makes of rows and files that no application wrote.
class HistoryListViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void tilesAreDrawnInFourColumns()
    {
        m_screen->addCovers(9);
        m_screen->open({1000, 700});
        // In a wide window the tiles are wider and no more columns come.
        for (const QSize window : {QSize{1000, 1000}, QSize{1600, 1500}}) {
            m_screen->window.resize(window);
            QTRY_COMPARE(m_screen->grid()->width(), window.width());
            QVERIFY(m_screen->waitUntilFilled());
            const QImage picture = m_screen->picture();
            const int side = (window.width() - 2 * 32 - 3 * 16) / 4;
            const int rowHeight = m_screen->tileRect(0).height() + 16;
            for (int position = 0; position < 9; ++position) {
                const QPoint corner{32 + position % 4 * (side + 16), position / 4 * rowHeight};
                const QList<QPoint> across = drawnRuns(picture, corner.y() + side / 2, Qt::Horizontal);
                QCOMPARE(across.size(), position < 8 ? 4 : 1);
                QCOMPARE(across.at(position % 4), QPoint(corner.x(), side));
                QVERIFY(drawnRuns(picture, corner.x() + side / 2, Qt::Vertical)
                            .contains(QPoint(corner.y(), side)));
                QCOMPARE(m_screen->tileRect(position).topLeft(), corner);
            }
            // Clicks between them hit nothing.
            const QRect tile = m_screen->tileRect(0);
            for (const QPoint place :
                 {QPoint{10, 50}, QPoint{tile.right() + 1, 50}, QPoint{tile.right() + 16, 50},
                  QPoint{50, tile.bottom() + 1}, QPoint{50, tile.bottom() + 16}}) {
                QVERIFY(screenCapture::isPlain(picture, {place, QSize{1, 1}}));
                QTest::mouseClick(m_screen->grid()->viewport(), Qt::LeftButton, {}, place);
                QVERIFY(HistoryScreen::preview() == nullptr);
            }
            QTest::mouseClick(m_screen->grid()->viewport(), Qt::LeftButton, {}, {50, tile.bottom() + 17});
            QTRY_VERIFY(HistoryScreen::preview() != nullptr);
            QVERIFY(HistoryScreen::closesPreview());
        }
    }

    void theGridIsInItsPlaceWhenItIsFirstDrawn()
    {
        m_screen->addCovers(5);
        // The screen comes into a window that is there already, as when its tab is selected.
        showWindow(m_screen->window, {1000, 700});
        QList<QSize> sizes;
        const PaintWatcher watcher{[&sizes](const QWidget &widget, const QRegion &) {
            if (const auto *grid = qobject_cast<HistoryGrid *>(widget.parent());
                grid && &widget == grid->viewport()) {
                sizes.append(grid->size());
            }
        }};
        m_screen->build();
        m_screen->view->show();
        // The button of the tab does so, to be seen released.
        m_screen->window.repaint();
        QVERIFY(!sizes.isEmpty());
        QCOMPARE(sizes.constFirst(), m_screen->grid()->size());
        QCOMPARE(m_screen->grid()->geometry().bottom(), m_screen->view->rect().bottom());
    }

    void theListIsReadAnewAtEachShowingAndRefresh()
    {
        m_screen->addRow(u"中"_s, {}, 2000);
        m_screen->addRow(u"旧"_s, {}, 1000.5);
        m_screen->open();
        m_screen->addRow(u"新"_s, {}, 3000);
        QCOMPARE(names(), (QStringList{u"中"_s, u"旧"_s}));
        m_screen->refresh();
        QCOMPARE(names(), (QStringList{u"新"_s, u"中"_s, u"旧"_s}));
        m_screen->view->hide();
        m_screen->addRow(u"最新"_s, {}, 4000);
        m_screen->view->show();
        QCOMPARE(names(), (QStringList{u"最新"_s, u"新"_s, u"中"_s, u"旧"_s}));
    }

    void refreshingKeepsThePlaceAndTheFocusedCover()
    {
        m_screen->addCovers(30);
        m_screen->open();
        m_screen->scrollTo(333);
        QVERIFY(m_screen->waitUntilFilled());
        const QImage before = m_screen->picture();
        const QPointer<HistoryGrid> grid = m_screen->grid();
        m_screen->refresh();
        QCOMPARE(m_screen->grid(), grid.data());
        QCOMPARE(grid->verticalScrollBar()->value(), 333);
        QVERIFY(m_screen->waitUntilFilled());
        QCOMPARE(m_screen->picture(), before);

        grid->setFocus(Qt::TabFocusReason);
        grid->setCurrentIndex(grid->model()->index(6, 0));
        const QString focused = m_screen->nameOf(6);
        m_screen->addRow(u"新"_s, {}, 2.0e9);
        m_screen->refresh();
        QCOMPARE(grid->currentIndex().row(), 7);
        QCOMPARE(m_screen->nameOf(7), focused);
    }

    void theGridTakesThePlaceOfTheEmptyViewAndBack()
    {
        m_screen->open();
        QCOMPARE(accessible::names(m_screen->view.get()),
                 (QStringList{texts::history, texts::refresh, texts::noCovers, texts::noCoversHint}));
        QVERIFY(m_screen->view->findChildren<QAbstractScrollArea *>().isEmpty());
        const qint64 id = m_screen->addRow(u"一"_s, {}, 1000);
        m_screen->refresh();
        QVERIFY(!m_screen->shows(texts::noCovers));
        QVERIFY(m_screen->grid() != nullptr && m_screen->grid()->isVisible());
        m_screen->database.deleteHistory(id);
        m_screen->refresh();
        QVERIFY(m_screen->shows(texts::noCovers));
        QVERIFY(m_screen->grid() == nullptr);
    }

    void tenThousandRowsTakePartWithoutBeingDrawn()
    {
        m_screen->writeCover(u"one.png"_s, {16, 9}, Qt::red);
        QStringList values;
        for (int number = 0; number < 10'000; ++number) {
            values += u"('提示 %1', '~/Pictures/Quilmora/coverimg/one.png', %1.0, '')"_s.arg(number);
        }
        SqliteConnection{m_screen->databasePath()}.execute(
            u"INSERT INTO history (prompt, image_path, created_at, model_id) VALUES "_s + values.join(u',') +
            u';');
        m_screen->open();
        QCOMPARE(m_screen->nameOf(0), u"提示 9999"_s);
        QCOMPARE(accessible::interfaceOf(m_screen->grid())->childCount(), 10'000);
        m_screen->scrollTo(m_screen->grid()->verticalScrollBar()->maximum());
        QVERIFY(m_screen->waitUntilFilled());
        const QRect last = m_screen->tileRect(9999);
        QCOMPARE(last.bottom() + 1 + 32, m_screen->grid()->viewport()->height());
        QVERIFY(screenCapture::countOf(m_screen->picture(), Qt::red, last) > 0);
        // A tile is no widget, in sight or not.
        QVERIFY(m_screen->grid()->viewport()->children().isEmpty());
    }

    void theScreenOnlyReads()
    {
        m_screen->addCovers(3);
        const QString databasePath = m_screen->databasePath();
        const auto fileBytes = [](const QString &path) {
            QFile file{path};
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
        };
        const QByteArray before = fileBytes(databasePath);
        m_screen->open();
        QVERIFY(m_screen->opensPreview(1));
        QVERIFY(HistoryScreen::closesPreview());
        m_screen->refresh();
        QVERIFY(!before.isEmpty());
        QCOMPARE(fileBytes(databasePath), before);
        QCOMPARE(QDir{m_screen->home.path(u"Pictures/Quilmora/coverimg"_s)}.entryList(QDir::Files).size(), 3);
    }

    void aRowWithoutAPictureShowsThePlaceholderAndOpens()
    {
        const TemporaryHome &home = m_screen->home;
        QVERIFY(QDir{}.mkpath(home.path(u"Pictures"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(home.path(u"pipe.png"_s)).constData(), 0600), 0);
        QVERIFY(QFile::link(home.path(u"loop.png"_s), home.path(u"loop.png"_s)));
        samplePictures::write(home.path(u"empty.png"_s), {});
        samplePictures::write(home.path(u"text.png"_s), "<html>no picture</html>");
        const QByteArray whole = samplePictures::png(samplePictures::picture({200, 100}));
        samplePictures::write(home.path(u"half.png"_s), whole.left(whole.size() / 2));
        // 300 megapixels.
        const QByteArray rows(100, '\0');
        samplePictures::write(home.path(u"bomb.png"_s),
                              samplePictures::pngByHand({20'000, 15'000}, 8, 6, rows));
        samplePictures::write(home.path(u"thin-bomb.png"_s),
                              samplePictures::pngByHand({20'000, 15'000}, 1, 0, rows));
        const QStringList paths{{},
                                u"~"_s,
                                u"/no/such/folder/cover.png"_s,
                                u"cover.png"_s,
                                u"~/Pictures"_s,
                                u"~root/cover.png"_s,
                                u"~/pipe.png"_s,
                                u"/dev/zero"_s,
                                u"~/empty.png"_s,
                                u"~/text.png"_s,
                                u"~/half.png"_s,
                                u"~/bomb.png"_s,
                                u"~/thin-bomb.png"_s,
                                u"~/loop.png"_s,
                                u"~/"_s + QString{100'000, u'x'}};
        for (qsizetype i = 0; i < paths.size(); ++i) {
            m_screen->addRow(u"提示"_s, paths.at(i), 1000.0 - static_cast<double>(i));
        }
        m_screen->open({1000, 1200});
        for (int position = 0; position < paths.size(); ++position) {
            const QByteArray name = paths.at(position).left(40).toUtf8();
            const char *path = name.constData();
            QVERIFY2(m_screen->grid()->viewport()->rect().contains(m_screen->squareRect(position)), path);
            QVERIFY2(showsPlaceholder(position), path);
            QVERIFY2(m_screen->opensPreview(position), path);
            QVERIFY2(HistoryScreen::inPreview(texts::cover) == nullptr, path);
            QVERIFY(HistoryScreen::closesPreview());
        }
    }

    void aFileWithoutPermissionShowsThePlaceholder()
    {
        // Its row has an absolute path.
        m_screen->writeCover(u"a.png"_s, {100, 100}, Qt::red);
        const QString file = m_screen->coverFile(u"a.png"_s);
        m_screen->addRow(u"提示"_s, file, 1000);
        QVERIFY(QFile::setPermissions(file, {}));
        // The superuser may read everything: an ordinary user looks, who can go to the file but not into it.
        for (QString folder = QFileInfo{file}.path(); folder.startsWith(m_screen->home.path());
             folder = QFileInfo{folder}.path()) {
            QVERIFY(QFile::setPermissions(folder, QFile::Permissions{0x7755}));
        }
        const OrdinaryUser user;
        QVERIFY(!QFile{file}.open(QIODevice::ReadOnly));
        m_screen->open();
        QVERIFY(showsPlaceholder(0));
        user.end();
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadOther));
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(screenCapture::countOf(m_screen->picture(), Qt::red) > 0);
    }

    void rowsOfUnexpectedTypesAreShown()
    {
        databaseFile::run(m_screen->databasePath(),
                          "INSERT INTO history (prompt, image_path, created_at, model_id) VALUES "
                          "(17, x'00ff00', 'yesterday', 3.5), (x'e4bda0', 12, x'01', ''), ('', '', -5, ''), "
                          "('p', 'a', 9e999, 'm'), ('p', 'a', -9e999, 'm')");
        m_screen->addRow(u"p"_s, {}, 1e300, {});
        m_screen->open();
        QCOMPARE(m_screen->grid()->model()->rowCount(), 6);
        QStringList names;
        for (int position = 0; position < 6; ++position) {
            names += m_screen->nameOf(position);
            QVERIFY(showsPlaceholder(position));
        }
        names.sort();
        QCOMPARE(names, (QStringList{{}, u"17"_s, u"p"_s, u"p"_s, u"p"_s, u"你"_s}));
        // A time beyond the calendar leaves its place blank.
        QCOMPARE(m_screen->descriptionOf(3), QString{});
    }

    void aPromptOfOddCharactersIsShown()
    {
        const QStringList prompts{
            {},
            u"\n\n\r\n\u2028\u2029\n"_s,
            QString{100'000, u'字'},
            u"👨‍👩‍👧‍👦"_s.repeated(500),
            u"שלום עולם "_s.repeated(200),
            u"标题 שלום title مرحبا "_s.repeated(100),
            QString{QChar{0xD83D}} + u"abc"_s,
            u"a"_s + QString{5000, QChar{0x0301}},
            u"a\x1b[31m\x07\u202e\u2066"_s,
            u"<img src='file:///etc/passwd'><b>"_s,
        };
        for (const QString &prompt : prompts) {
            cleanup();
            init();
            m_screen->addRow(prompt, {}, 1000);
            m_screen->open();
            // Nothing is drawn beside the tile or below it.
            const QImage picture = m_screen->picture();
            const QRect tile = m_screen->tileRect(0);
            const QByteArray name = prompt.left(20).toUtf8();
            const char *start = name.constData();
            QVERIFY2(screenCapture::isPlain(picture, {tile.right() + 1, 0, 16, picture.height()}), start);
            QVERIFY2(screenCapture::isPlain(picture, {0, tile.bottom() + 1, picture.width(), 32}), start);
            QVERIFY2(m_screen->opensPreview(0), start);
        }
    }

private:
    /// Of all tiles, as a screen reader hears them.
    QStringList names()
    {
        QStringList names;
        for (int position = 0; position < m_screen->grid()->model()->rowCount(); ++position) {
            names.append(m_screen->nameOf(position));
        }
        return names;
    }

    bool showsPlaceholder(int position)
    {
        const QRect middle{m_screen->squareRect(position).center() - QPoint{22, 22}, QSize{44, 44}};
        const QImage picture = m_screen->picture();
        return !screenCapture::isPlain(picture, middle, picture.pixelColor(middle.topLeft()));
    }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryListViewTest, runScreenTest)
#include "HistoryListViewTest.moc"
