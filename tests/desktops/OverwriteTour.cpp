#include "DesktopInput.h"
#include "ProgramOnDesktop.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// With the file dialog of a desktop, a file that exists is replaced after exactly one question.
class OverwriteTour final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void aNameWithoutEndingIsAskedAboutByTheProgram();
    void aRefusalKeepsFileAndName();
    void aWholeNameIsAskedAboutByTheDialogAlone();

private:
    using Condition = bool (OverwriteTour::*)();

    /// Types the name into the dialog that is open, and presses Return.
    static std::function<void()> enter(const QString &name);
    static std::function<void()> press(const QString &key);
    /// Does what `use` does where that is possible, until the condition holds; once more where it had no
    /// effect, since a window that has just opened may miss keys.
    bool useUntil(Condition isReady, const std::function<void()> &use, Condition holds);

    /// Whether the dialog is open and its name field has the focus, as the focus ring of GTK shows.
    bool takesName();
    bool programAsks() { return program->desktop().isShowing(programQuestion); }
    /// Whether the dialog's own question is open, which has no title.
    bool dialogAsks();
    bool isClosed() { return desktopInput::activeTitle() == u"Quilmora"_s; }
    bool isReplaced() { return content().startsWith("\x89PNG"); }
    QByteArray content() const;

    const QString programQuestion = u"“mine.png”已存在。要替换它吗？"_s;
    const QString dialogTitle = u"保存封面图片"_s;
    const TemporaryHome home;
    std::optional<ProgramOnDesktop> program;
};

void OverwriteTour::initTestCase()
{
    QVERIFY(QDir{}.mkpath(home.path(u"Pictures"_s)));
    DatabaseManager database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    const auto path =
        ImageStorageService{coversFolder::path()}.saveImage(samplePictures::picture({640, 480}));
    database.insertHistory(u"A cover"_s, path.value(), u"model"_s);

    program.emplace();
    QTRY_VERIFY_WITH_TIMEOUT(program->desktop().act(u"已生成列表"_s), desktopLimit);
    QTRY_VERIFY_WITH_TIMEOUT(program->desktop().act(u"A cover"_s), desktopLimit);
}

void OverwriteTour::cleanupTestCase()
{
    program.reset();
    // Qt keeps preferences of file dialogs, whoever shows them.
    QVERIFY(!QFile::exists(home.path(u".config/QtProject.conf"_s)));
}

void OverwriteTour::init()
{
    samplePictures::write(home.path(u"Pictures/mine.png"_s), "former");
    QTRY_VERIFY_WITH_TIMEOUT(program->desktop().act(u"保存图片"_s), desktopLimit);
}

bool OverwriteTour::takesName()
{
    constexpr QColor focusRing{0x35, 0x84, 0xE4};
    constexpr int leastWidth = 300;
    return desktopInput::activeTitle() == dialogTitle &&
           desktopInput::pixelsOf(focusRing).width() > leastWidth;
}

bool OverwriteTour::dialogAsks()
{
    const QString title = desktopInput::activeTitle();
    return title.isEmpty() && !title.isNull() && !programAsks();
}

QByteArray OverwriteTour::content() const
{
    QFile file{home.path(u"Pictures/mine.png"_s)};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

std::function<void()> OverwriteTour::enter(const QString &name)
{
    return [name] {
        desktopInput::press(u"ctrl+a"_s);
        desktopInput::type(name);
        desktopInput::press(u"Return"_s);
    };
}

std::function<void()> OverwriteTour::press(const QString &key)
{
    return [key] {
        desktopInput::press(key);
    };
}

bool OverwriteTour::useUntil(Condition isReady, const std::function<void()> &use, Condition holds)
{
    constexpr int patience = 3'000; // milliseconds
    constexpr int limit = 30'000;
    const auto isDone = [&] {
        if ((this->*holds)()) {
            return true;
        }
        if (!(this->*isReady)()) {
            return false;
        }
        use();
        return QTest::qWaitFor([&] { return (this->*holds)(); }, patience);
    };
    return QTest::qWaitFor(isDone, limit);
}

void OverwriteTour::aNameWithoutEndingIsAskedAboutByTheProgram()
{
    QVERIFY(useUntil(&OverwriteTour::takesName, enter(u"mine"_s), &OverwriteTour::programAsks));
    QCOMPARE(content(), "former");
    QVERIFY(program->desktop().act(u"替换"_s));
    QTRY_VERIFY_WITH_TIMEOUT(isReplaced(), desktopLimit);
}

void OverwriteTour::aRefusalKeepsFileAndName()
{
    QVERIFY(useUntil(&OverwriteTour::takesName, enter(u"mine"_s), &OverwriteTour::programAsks));
    QVERIFY(program->desktop().act(u"取消"_s));
    QVERIFY(useUntil(&OverwriteTour::takesName, press(u"Return"_s), &OverwriteTour::dialogAsks));
    QCOMPARE(content(), "former");
    QVERIFY(useUntil(&OverwriteTour::dialogAsks, press(u"Escape"_s), &OverwriteTour::takesName));
    QVERIFY(useUntil(&OverwriteTour::takesName, press(u"Escape"_s), &OverwriteTour::isClosed));
    QCOMPARE(content(), "former");
}

void OverwriteTour::aWholeNameIsAskedAboutByTheDialogAlone()
{
    QVERIFY(useUntil(&OverwriteTour::takesName, enter(u"mine.png"_s), &OverwriteTour::dialogAsks));
    QCOMPARE(content(), "former");
    QVERIFY(useUntil(&OverwriteTour::dialogAsks, press(u"Return"_s), &OverwriteTour::isReplaced));
}

QTEST_GUILESS_MAIN(OverwriteTour)
#include "OverwriteTour.moc"
