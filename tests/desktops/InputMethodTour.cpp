#include "DesktopInput.h"
#include "ProgramOnDesktop.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "support/ScriptedHttpServer.h"
#include "support/TemporaryHome.h"

#include <QDeadlineTimer>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// Chinese typed with a pinyin input method into every field of the program.
class InputMethodTour final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void aComposedTitleIsEnough();
    void aWordGoesIntoEachField();
    void theSettingsTakeLatinLetters();

private:
    /// Clicks into the middle of what has that name.
    void click(const QString &name);
    /// Types the letters of 你好 and the blank that chooses the first word in place of what is there.
    void composeInto(const QString &name);

    const TemporaryHome home;
    ScriptedHttpServer server{[](const ReceivedRequest &) {
        return ScriptedAnswer::whole("{}");
    }};
    DatabaseManager database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    std::optional<ProgramOnDesktop> program;
};

namespace
{

constexpr int longest = 30'000; // milliseconds

QString letters()
{
    return u"nihao"_s;
}

QString word()
{
    return u"你好"_s;
}

} // namespace

void InputMethodTour::initTestCase()
{
    database.saveConfig(server.url().toString(), u"key"_s, u"model"_s);
    program.emplace();
}

void InputMethodTour::cleanupTestCase()
{
    QCOMPARE(program->end(), QByteArray{});
}

void InputMethodTour::click(const QString &name)
{
    desktopInput::click(program->desktop().bounds(name).center());
}

void InputMethodTour::composeInto(const QString &name)
{
    QTRY_VERIFY2_WITH_TIMEOUT(program->desktop().act(name), qPrintable(name), desktopLimit);
    desktopInput::press(u"ctrl+a"_s);
    desktopInput::type(letters() + u' ');
    QTRY_COMPARE_WITH_TIMEOUT(program->desktop().content(name), word(), desktopLimit);
}

void InputMethodTour::aComposedTitleIsEnough()
{
    const QString title = u"视频封面标题文本"_s;
    const QString button = u"开始生成封面"_s;
    // The program is connected to the input method some time after its window has come.
    const auto composes = [&] {
        click(title);
        desktopInput::press(u"ctrl+a"_s);
        desktopInput::press(u"BackSpace"_s);
        desktopInput::type(letters());
        return program->desktop().isUsable(button) && program->desktop().content(title).isEmpty();
    };
    for (const QDeadlineTimer end{longest}; !composes();) {
        QVERIFY2(!end.hasExpired(), "Nothing is composed");
    }
    desktopInput::press(u"Escape"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!program->desktop().isUsable(button), desktopLimit);
    QCOMPARE(program->desktop().content(title), QString{});

    desktopInput::type(letters());
    QTRY_VERIFY_WITH_TIMEOUT(program->desktop().isUsable(button), desktopLimit);
    QCOMPARE(program->desktop().content(title), QString{});
    click(button);
    QTRY_COMPARE_WITH_TIMEOUT(server.requestCount(), 1, desktopLimit);
    const QString body = QString::fromUtf8(server.requests().constFirst().body);
    QVERIFY2(body.contains(u"封面主标题文字：「ni hao」"_s) || body.contains(u"封面主标题文字：「你好」"_s),
             qPrintable(body));
    QTRY_VERIFY_WITH_TIMEOUT(program->desktop().isShowing(u"返回表单"_s), desktopLimit);
    QVERIFY(program->desktop().act(u"返回表单"_s));
    QTRY_VERIFY_WITH_TIMEOUT(program->desktop().isShowing(title), desktopLimit);
}

void InputMethodTour::aWordGoesIntoEachField()
{
    const QString advanced = u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s;
    composeInto(u"视频封面标题文本"_s);
    composeInto(u"背景场景"_s);
    QVERIFY(program->desktop().act(u"自定义..."_s));
    composeInto(u"请输入自定义表情描述"_s);
    composeInto(advanced);
}

void InputMethodTour::theSettingsTakeLatinLetters()
{
    QVERIFY(program->desktop().act(u"功能设置"_s));
    for (const QString &field : {u"API URL"_s, u"API Key"_s, u"Model ID"_s}) {
        QTRY_VERIFY_WITH_TIMEOUT(program->desktop().isShowing(field), desktopLimit);
        QVERIFY(program->desktop().act(field));
        desktopInput::press(u"ctrl+a"_s);
        desktopInput::type(letters() + u' ');
    }
    QTRY_COMPARE_WITH_TIMEOUT(program->desktop().content(u"Model ID"_s).trimmed(), letters(), desktopLimit);
    QVERIFY(program->desktop().act(u"保存设置"_s));
    QTRY_COMPARE_WITH_TIMEOUT(database.getConfig().apiURL, letters(), desktopLimit);
    QCOMPARE(database.getConfig().apiKey, letters());
    QCOMPARE(database.getConfig().modelID, letters());
}

QTEST_GUILESS_MAIN(InputMethodTour)
#include "InputMethodTour.moc"
