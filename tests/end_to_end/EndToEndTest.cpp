#include "ProgramFixture.h"
#include "reliability/ServiceProcess.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

using namespace quilmora;
using namespace quilmora::test;

/// The program as a user starts it, against the bundled image service.
class EndToEndTest final : public ProgramFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        saveSettings({m_service.endpoint(), u"a key"_s, u"doubao-seedream-4-0-250828"_s});
        startAndWaitForForm();
    }

    void aCoverIsMadeStoredAndRecorded()
    {
        choosePicture(samplePictures::write(m_home.path(u"照片 'mine' 😀.jpg"_s),
                                            samplePictures::jpeg(samplePictures::picture({640, 640}))));
        QVERIFY(!m_desktop.isUsable(generateButton));
        QVERIFY(m_desktop.setText(u"背景场景"_s, u"海边"_s));
        press(u"惊喜"_s);
        QTRY_VERIFY(m_desktop.isChecked(u"惊喜"_s));
        QVERIFY(!m_desktop.isChecked(u"震惊"_s));
        press(u"经典"_s);
        generate(u"标题"_s);
        waitFor(u"生成成功"_s);

        const QList<HistoryRecord> rows = history();
        QCOMPARE(rows.size(), 1);
        QCOMPARE(
            rows.first().prompt,
            u"生成一张视频封面图。 封面主标题文字：「标题」，标题需突出醒目、具有冲击力。 背景场景：海边。 "
            "人物表情：惊喜。 整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
        QCOMPARE(rows.first().image().size(), QSize(2304, 1728));
    }

    void theCoverIsFoundAgainInTheHistory()
    {
        const HistoryRecord row = history().constFirst();
        press(u"已生成列表"_s);
        waitFor(row.prompt);
        QVERIFY(m_desktop.isUsable(u"刷新"_s));
        QTRY_VERIFY(m_desktop.act(row.prompt));
        waitFor(u"关闭预览"_s);
        QVERIFY(shows(u"封面"_s));
        press(u"关闭"_s);
        QTRY_VERIFY(!shows(u"关闭预览"_s));
        // Removed from the disk, it is listed still, and asking for it again does no harm.
        QVERIFY(QFile::remove(userFolders::expandTilde(row.imagePath)));
        press(u"刷新"_s);
        waitFor(row.prompt);
        press(row.prompt);
        waitFor(u"关闭预览"_s);
        QVERIFY(!shows(u"封面"_s));
        press(u"关闭预览"_s);
        QTRY_VERIFY(!shows(u"关闭预览"_s));
    }

    void whatWasTypedIsGoneAfterAVisitToAnotherTab()
    {
        press(u"功能设置"_s);
        waitFor(u"保存设置"_s);
        QVERIFY(!shows(u"生成成功"_s));
        press(u"保存设置"_s);
        waitFor(u"火山引擎配置已成功保存"_s);
        press(u"好的"_s);
        QTRY_VERIFY(!shows(u"火山引擎配置已成功保存"_s));
        press(u"生成封面"_s);
        waitFor(generateButton);
        QVERIFY(!m_desktop.isUsable(generateButton));
        QVERIFY(!shows(u"移除"_s));
    }

    void anAddressOnTheHelpTabIsCopied()
    {
        const QString website = QStringLiteral(QUILMORA_WEBSITE);
        press(u"帮助说明"_s);
        waitFor(u"版本号：1.0.0"_s);
        QVERIFY(!shows(u"已复制："_s + website));
        press(u"服务帮助："_s + website + u"（仅技术支持与使用说明）"_s);
        waitFor(u"已复制："_s + website);
        QTRY_VERIFY(!shows(u"已复制："_s + website));
    }

    /// Neither on standard output nor, after a file dialog, whose preferences Qt would keep, in settings.
    void nothingIsLeftBehind()
    {
        QCOMPARE(m_program->state(), QProcess::Running);
        terminate();
        QCOMPARE(m_program->readAllStandardOutput(), QByteArray{});
        QVERIFY(!QFile::exists(m_home.path(u".config/QtProject.conf"_s)));
    }

private:
    static QList<HistoryRecord> history()
    {
        return DatabaseManager{dataFolder(), coversFolder::path()}.fetchAllHistory();
    }

    const ServiceProcess m_service{{u"--key"_s, u"a key"_s, u"--delay"_s, u"300"_s}};
};

QUILMORA_TEST(EndToEndTest, runCoreTest)
#include "EndToEndTest.moc"
