#include "support/DatabaseFile.h"
#include "support/HistoryScreen.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

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

class HistoryBadInputTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void aRowWithoutAPictureShowsThePlaceholderAndOpens_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("empty") << QString{};
        QTest::newRow("the home folder") << u"~"_s;
        QTest::newRow("absolute, missing") << u"/no/such/folder/cover.png"_s;
        QTest::newRow("relative") << u"cover.png"_s;
        QTest::newRow("a folder") << u"~/Pictures"_s;
        QTest::newRow("another user's home") << u"~root/cover.png"_s;
        QTest::newRow("a pipe") << u"~/pipe.png"_s;
        QTest::newRow("a device") << u"/dev/zero"_s;
        QTest::newRow("no bytes") << u"~/empty.png"_s;
        QTest::newRow("no picture") << u"~/text.png"_s;
        QTest::newRow("truncated") << u"~/half.png"_s;
        QTest::newRow("300 megapixels") << u"~/bomb.png"_s;
        QTest::newRow("300 megapixels of one bit") << u"~/thin-bomb.png"_s;
        QTest::newRow("a link to itself") << u"~/loop.png"_s;
        QTest::newRow("a path of 100,000 characters") << u"~/"_s + QString{100'000, u'x'};
    }

    void aRowWithoutAPictureShowsThePlaceholderAndOpens()
    {
        QFETCH(const QString, path);
        const TemporaryHome &home = m_screen->home;
        QVERIFY(QDir{}.mkpath(home.path(u"Pictures"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(home.path(u"pipe.png"_s)).constData(), 0600), 0);
        QVERIFY(QFile::link(home.path(u"loop.png"_s), home.path(u"loop.png"_s)));
        samplePictures::write(home.path(u"empty.png"_s), {});
        samplePictures::write(home.path(u"text.png"_s), "<html>no picture</html>");
        const QByteArray whole = samplePictures::png(samplePictures::picture({200, 100}));
        samplePictures::write(home.path(u"half.png"_s), whole.left(whole.size() / 2));
        const QByteArray rows(100, '\0');
        samplePictures::write(home.path(u"bomb.png"_s),
                              samplePictures::pngByHand({20'000, 15'000}, 8, 6, rows));
        samplePictures::write(home.path(u"thin-bomb.png"_s),
                              samplePictures::pngByHand({20'000, 15'000}, 1, 0, rows));

        m_screen->addRow(u"提示"_s, path, 1000);
        m_screen->open();
        QVERIFY(showsPlaceholder(0));
        QVERIFY(m_screen->opensPreview(0));
        QVERIFY(HistoryScreen::inPreview(texts::cover) == nullptr);
        QTest::keyClick(HistoryScreen::preview(), Qt::Key_Escape);
        QTRY_VERIFY(HistoryScreen::preview() == nullptr);
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
        m_screen->open();
        QCOMPARE(m_screen->grid()->model()->rowCount(), 5);
        QStringList names;
        for (int position = 0; position < 5; ++position) {
            names += m_screen->tile(position)->text(QAccessible::Name);
            QVERIFY(showsPlaceholder(position));
        }
        names.sort();
        QCOMPARE(names, (QStringList{{}, u"17"_s, u"p"_s, u"p"_s, u"你"_s}));
    }

    void aPromptOfOddCharactersIsShown_data()
    {
        QTest::addColumn<QString>("prompt");
        QTest::newRow("nothing") << QString{};
        QTest::newRow("line breaks only") << u"\n\n\r\n\u2028\u2029\n"_s;
        QTest::newRow("no blanks") << QString{100'000, u'字'};
        QTest::newRow("families of emoji") << u"👨‍👩‍👧‍👦"_s.repeated(500);
        QTest::newRow("right to left") << u"שלום עולם "_s.repeated(200);
        QTest::newRow("both directions") << u"标题 שלום title مرحبا "_s.repeated(100);
        QTest::newRow("half a character") << QString{QChar{0xD83D}} + u"abc"_s;
        QTest::newRow("marks upon marks") << u"a"_s + QString{5000, QChar{0x0301}};
        QTest::newRow("control characters") << u"a\x1b[31m\x07\u202e\u2066"_s;
        QTest::newRow("markup") << u"<img src='file:///etc/passwd'><b>"_s;
    }

    void aPromptOfOddCharactersIsShown()
    {
        QFETCH(const QString, prompt);
        m_screen->addRow(prompt, {}, 1000);
        m_screen->open();
        // Nothing is drawn beside the tile or below it.
        const QImage picture = m_screen->picture();
        const QRect tile = m_screen->tileRect(0);
        const QRect beside{tile.right() + 1, 0, 16, picture.height()};
        const QRect below{0, tile.bottom() + 1, picture.width(), 32};
        QVERIFY(screenCapture::isPlain(picture, beside));
        QVERIFY(screenCapture::isPlain(picture, below));
        QVERIFY(m_screen->opensPreview(0));
    }

    void aTimeBeyondTheCalendarLeavesItsPlaceBlank()
    {
        m_screen->addRow(u"p"_s, {}, 1e300, {});
        m_screen->open();
        QCOMPARE(m_screen->tile(0)->text(QAccessible::Description), QString{});
    }

private:
    bool showsPlaceholder(int position)
    {
        const QRect middle{m_screen->squareRect(position).center() - QPoint{22, 22}, QSize{44, 44}};
        const QImage picture = m_screen->picture();
        return !screenCapture::isPlain(picture, middle, picture.pixelColor(middle.topLeft()));
    }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryBadInputTest, runScreenTest)
#include "HistoryBadInputTest.moc"
