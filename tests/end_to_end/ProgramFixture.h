#pragma once

#include "AccessibleDesktop.h"
#include "platform/Files.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/TemporaryHome.h"

#include <QObject>
#include <QProcess>
#include <QTest>

#include <functional>
#include <optional>

namespace quilmora::test {

using namespace Qt::StringLiterals;

/// The program as a process, in a home folder of its own, worked over the accessibility bus.
/// QUILMORA_TESTED_PROGRAM may name another one than that of this build, an installed one for instance.
class ProgramFixture : public QObject
{
    Q_OBJECT

protected:
    /// How long a test waits for the program, in milliseconds: far longer than it takes for anything, and far
    /// shorter than it waits for the service.
    static constexpr int longest = 60'000;

    inline static const QString titleField = u"视频封面标题文本"_s;
    inline static const QString generateButton = u"开始生成封面"_s;

    ProgramFixture()
    {
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        m_environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    }

    /// What is to be done with the output of the program, before it starts.
    virtual void redirect(QProcess &program)
    {
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }

    void start()
    {
        m_program.emplace();
        m_program->setProcessEnvironment(m_environment);
        redirect(*m_program);
        m_program->start(qEnvironmentVariable("QUILMORA_TESTED_PROGRAM", QStringLiteral(QUILMORA_PROGRAM)),
                         QStringList{});
        QVERIFY(m_program->waitForStarted());
    }
    void startAndWaitForForm()
    {
        start();
        waitFor(titleField);
    }
    void terminate()
    {
        m_program->terminate();
        QVERIFY(m_program->waitForFinished());
    }

    bool shows(const QString &name) { return m_desktop.isShowing(name); }
    void waitFor(const QString &name) { QTRY_VERIFY2_WITH_TIMEOUT(shows(name), qPrintable(name), longest); }
    void press(const QString &name) { QVERIFY2(m_desktop.act(name), qPrintable(name)); }
    /// Presses until the condition holds: a press that closes something may be answered too late to be told
    /// from one that failed.
    void pressUntil(const QString &name, const std::function<bool()> &holds)
    {
        QTRY_VERIFY2_WITH_TIMEOUT(holds() || (m_desktop.act(name), false), qPrintable(name), longest);
    }

    void choosePicture(const QString &path)
    {
        press(u"人脸形象（必填）"_s);
        waitFor(u"选择图片"_s);
        QTRY_VERIFY(m_desktop.setText(u"文件名称(N)："_s, path));
        pressUntil(u"打开(O)"_s, [this] { return !shows(u"选择图片"_s); });
        waitFor(u"移除"_s);
    }
    void generate(const QString &title)
    {
        QVERIFY(m_desktop.setText(titleField, title));
        QTRY_VERIFY(m_desktop.isUsable(generateButton));
        press(generateButton);
    }

    static QString dataFolder() { return userFolders::applicationSupport() + u"/Quilmora"_s; }
    static void saveSettings(const VolcengineConfig &settings)
    {
        DatabaseManager{dataFolder(), coversFolder::path()}.saveConfig(settings.apiURL, settings.apiKey,
                                                                       settings.modelID);
    }

    const TemporaryHome m_home;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    AccessibleDesktop m_desktop;
    std::optional<QProcess> m_program;
};

} // namespace quilmora::test
