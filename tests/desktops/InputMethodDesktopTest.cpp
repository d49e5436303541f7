#include "ProgramOnDesktop.h"
#include "platform/Files.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/ScriptedHttpServer.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDeadlineTimer>

#include <optional>

using namespace quilmora;
using namespace quilmora::test;

/// Chinese typed with a pinyin input method into every field of the program.
class InputMethodDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_database.saveConfig(m_server.url().toString(), u"key"_s, u"model"_s);
        m_program.emplace();
    }

    void cleanupTestCase() { QCOMPARE(m_program->end(), QByteArray{}); }

    void aComposedTitleIsEnough()
    {
        const QString title = u"视频封面标题文本"_s;
        const QString button = u"开始生成封面"_s;
        // The program is connected to the input method some time after its window has come.
        const auto composes = [&] {
            click(title);
            desktopInput::press(u"ctrl+a"_s);
            desktopInput::press(u"BackSpace"_s);
            desktopInput::type(m_letters);
            return desktop().isUsable(button) && desktop().content(title).isEmpty();
        };
        for (const QDeadlineTimer end{desktopLimit}; !composes();) {
            QVERIFY2(!end.hasExpired(), "Nothing is composed");
        }
        desktopInput::press(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!desktop().isUsable(button), desktopLimit);
        QCOMPARE(desktop().content(title), QString{});

        desktopInput::type(m_letters);
        QTRY_VERIFY_WITH_TIMEOUT(desktop().isUsable(button), desktopLimit);
        QCOMPARE(desktop().content(title), QString{});
        click(button);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(), 1, desktopLimit);
        const QString body = QString::fromUtf8(m_server.requests().constFirst().body);
        QVERIFY2(body.contains(u"封面主标题文字：「ni hao」"_s) ||
                     body.contains(u"封面主标题文字：「你好」"_s),
                 qPrintable(body));
        QTRY_VERIFY_WITH_TIMEOUT(desktop().isShowing(u"返回表单"_s), desktopLimit);
        QVERIFY(desktop().act(u"返回表单"_s));
        QTRY_VERIFY_WITH_TIMEOUT(desktop().isShowing(title), desktopLimit);
    }

    void aWordGoesIntoEachField()
    {
        composeInto(u"视频封面标题文本"_s);
        composeInto(u"背景场景"_s);
        QVERIFY(desktop().act(u"自定义..."_s));
        composeInto(u"请输入自定义表情描述"_s);
        composeInto(u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s);
    }

    void theSettingsTakeLatinLetters()
    {
        QVERIFY(desktop().act(u"功能设置"_s));
        for (const QString &field : {u"API URL"_s, u"API Key"_s, u"Model ID"_s}) {
            QTRY_VERIFY_WITH_TIMEOUT(desktop().isShowing(field), desktopLimit);
            QVERIFY(desktop().act(field));
            desktopInput::press(u"ctrl+a"_s);
            desktopInput::type(m_letters + u' ');
        }
        QTRY_COMPARE_WITH_TIMEOUT(desktop().content(u"Model ID"_s).trimmed(), m_letters, desktopLimit);
        QVERIFY(desktop().act(u"保存设置"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_database.getConfig().apiURL, m_letters, desktopLimit);
        QCOMPARE(m_database.getConfig().apiKey, m_letters);
        QCOMPARE(m_database.getConfig().modelID, m_letters);
    }

private:
    AccessibleDesktop &desktop() { return m_program->desktop(); }

    /// Clicks into the middle of what has that name.
    void click(const QString &name) { desktopInput::click(desktop().bounds(name).center()); }

    /// Types the letters of 你好 and the blank that chooses the first word in place of what is there.
    void composeInto(const QString &name)
    {
        QTRY_VERIFY2_WITH_TIMEOUT(desktop().act(name), qPrintable(name), desktopLimit);
        desktopInput::press(u"ctrl+a"_s);
        desktopInput::type(m_letters + u' ');
        QTRY_COMPARE_WITH_TIMEOUT(desktop().content(name), u"你好"_s, desktopLimit);
    }

    const TemporaryHome m_home;
    const QString m_letters = u"nihao"_s;
    ScriptedHttpServer m_server{ScriptedResponse::whole("{}")};
    DatabaseManager m_database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    std::optional<ProgramOnDesktop> m_program;
};

QUILMORA_TEST(InputMethodDesktopTest, runCoreTest)
#include "InputMethodDesktopTest.moc"
