#include "HistoryScreen.h"
#include "support/DatabaseFile.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// Gives up the superuser's rights for a while; without effect on a process that has none.
class OrdinaryUser final
{
public:
    OrdinaryUser() { change(nobody); }
    Q_DISABLE_COPY_MOVE(OrdinaryUser)
    ~OrdinaryUser() { end(); }

    void end() const { change(self); }

private:
    void change(uid_t user) const
    {
        if (self == 0 && ::seteuid(user) != 0) {
            qFatal("Cannot change the user");
        }
    }

    static constexpr uid_t nobody = 65534;
    const uid_t self = ::getuid();
};

} // namespace

class HistoryBadInputTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { screen.reset(); }
    void aRowWithoutAPictureShowsThePlaceholderAndOpens_data();
    void aRowWithoutAPictureShowsThePlaceholderAndOpens();
    void aFileWithoutPermissionShowsThePlaceholder();
    void aRowWithAnAbsolutePathShowsItsPicture();
    void rowsOfUnexpectedTypesAreShown();
    void aPromptOfOddCharactersIsShown_data();
    void aPromptOfOddCharactersIsShown();
    void aTimeBeyondTheCalendarLeavesItsPlaceBlank();

private:
    bool showsPlaceholder(int position);

    std::unique_ptr<HistoryScreen> screen;
};

bool HistoryBadInputTest::showsPlaceholder(int position)
{
    const QRect tile = screen->tileRect(position);
    const QRect middle{tile.center().x() - 22, tile.top() + tile.width() / 2 - 22, 44, 44};
    const QImage picture = screen->picture().copy(middle);
    QImage ground{picture.size(), picture.format()};
    ground.fill(picture.pixel(0, 0));
    ground.setDevicePixelRatio(picture.devicePixelRatio());
    return picture != ground;
}

void HistoryBadInputTest::aRowWithoutAPictureShowsThePlaceholderAndOpens_data()
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
    QTest::newRow("cut in half") << u"~/half.png"_s;
    QTest::newRow("300 megapixels") << u"~/bomb.png"_s;
    QTest::newRow("300 megapixels of one bit") << u"~/thin-bomb.png"_s;
    QTest::newRow("a link to itself") << u"~/loop.png"_s;
    QTest::newRow("a path of 100,000 characters") << u"~/"_s + QString{100'000, u'x'};
}

void HistoryBadInputTest::aRowWithoutAPictureShowsThePlaceholderAndOpens()
{
    QFETCH(const QString, path);
    const TemporaryHome &home = screen->home;
    QVERIFY(QDir{}.mkpath(home.path(u"Pictures"_s)));
    QCOMPARE(::mkfifo(QFile::encodeName(home.path(u"pipe.png"_s)).constData(), 0600), 0);
    QVERIFY(QFile::link(home.path(u"loop.png"_s), home.path(u"loop.png"_s)));
    samplePictures::write(home.path(u"empty.png"_s), {});
    samplePictures::write(home.path(u"text.png"_s), "<html>no picture</html>");
    const QByteArray whole = samplePictures::png(samplePictures::picture({200, 100}));
    samplePictures::write(home.path(u"half.png"_s), whole.left(whole.size() / 2));
    const QByteArray rows(100, '\0');
    samplePictures::write(home.path(u"bomb.png"_s), samplePictures::pngByHand({20'000, 15'000}, 8, 6, rows));
    samplePictures::write(home.path(u"thin-bomb.png"_s),
                          samplePictures::pngByHand({20'000, 15'000}, 1, 0, rows));

    screen->addRow(u"提示"_s, path, 1000);
    screen->open();
    QVERIFY(showsPlaceholder(0));
    screen->clickTile(0);
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
    QVERIFY(accessible::find(HistoryScreen::preview(), u"封面"_s) == nullptr);
    QTest::keyClick(HistoryScreen::preview(), Qt::Key_Escape);
    QTRY_VERIFY(HistoryScreen::preview() == nullptr);
}

void HistoryBadInputTest::aFileWithoutPermissionShowsThePlaceholder()
{
    const QString file = screen->addCover(u"a.png"_s, {100, 100}, 1000, Qt::red);
    QVERIFY(QFile::setPermissions(file, {}));
    // The superuser may read everything: an ordinary user looks, who can go to the file but not into it.
    for (QString folder = QFileInfo{file}.path(); folder.startsWith(screen->home.path());
         folder = QFileInfo{folder}.path()) {
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions{0x7755}));
    }
    const OrdinaryUser user;
    QVERIFY(!QFile{file}.open(QIODevice::ReadOnly));
    screen->open();
    QVERIFY(showsPlaceholder(0));
    user.end();
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadOther));
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(screenCapture::countOf(screen->picture(), Qt::red) > 0);
}

void HistoryBadInputTest::aRowWithAnAbsolutePathShowsItsPicture()
{
    screen->writeCover(u"a.png"_s, {100, 100}, Qt::red);
    screen->addRow(u"提示"_s, screen->coverFile(u"a.png"_s), 1000);
    screen->open();
    QVERIFY(screenCapture::countOf(screen->picture(), Qt::red) > 0);
}

void HistoryBadInputTest::rowsOfUnexpectedTypesAreShown()
{
    databaseFile::run(screen->databasePath(),
                      "INSERT INTO history (prompt, image_path, created_at, model_id) VALUES "
                      "(17, x'00ff00', 'yesterday', 3.5), (x'e4bda0', 12, x'01', ''), ('', '', -5, ''), "
                      "('p', 'a', 9e999, 'm'), ('p', 'a', -9e999, 'm')");
    screen->open();
    QCOMPARE(screen->grid()->model()->rowCount(), 5);
    QStringList names;
    for (int position = 0; position < 5; ++position) {
        names += screen->tile(position)->text(QAccessible::Name);
        QVERIFY(showsPlaceholder(position));
    }
    names.sort();
    QCOMPARE(names, (QStringList{{}, u"17"_s, u"p"_s, u"p"_s, u"你"_s}));
}

void HistoryBadInputTest::aPromptOfOddCharactersIsShown_data()
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

void HistoryBadInputTest::aPromptOfOddCharactersIsShown()
{
    QFETCH(const QString, prompt);
    screen->addRow(prompt, {}, 1000);
    screen->open();
    // Nothing is drawn beside the tile or below it.
    const QImage picture = screen->picture();
    const QRect tile = screen->tileRect(0);
    const QRect beside{tile.right() + 1, 0, 16, picture.height()};
    const QRect below{0, tile.bottom() + 1, picture.width(), 32};
    const QColor bare{0, 0, 0, 0};
    QCOMPARE(screenCapture::countOf(picture, bare, beside), beside.width() * beside.height());
    QCOMPARE(screenCapture::countOf(picture, bare, below), below.width() * below.height());
    screen->clickTile(0);
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
}

void HistoryBadInputTest::aTimeBeyondTheCalendarLeavesItsPlaceBlank()
{
    screen->addRow(u"p"_s, {}, 1e300, {});
    screen->open();
    QCOMPARE(screen->tile(0)->text(QAccessible::Description), QString{});
}

int main(int argc, char **argv)
{
    return runScreenTest<HistoryBadInputTest>(argc, argv);
}
#include "HistoryBadInputTest.moc"
