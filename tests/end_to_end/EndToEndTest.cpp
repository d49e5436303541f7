#include "AccessibleDesktop.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"

#include <QProcess>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The program as a user starts it, against the bundled image service. QUILMORA_TESTED_PROGRAM may name
/// another one than that of this build, an installed one for instance.
class EndToEndTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void aCoverIsMadeStoredAndRecorded();
    void theCoverIsFoundAgainInTheHistory();
    void whatWasTypedIsGoneAfterAVisitToAnotherTab();
    void anAddressOnTheHelpTabIsCopied();
    void standardOutputStaysEmpty();
    void noSettingsAreLeftBehind();

private:
    void startService();
    void choosePicture(const QString &card, const QString &path);

    TemporaryHome home;
    QProcess service;
    QProcess program;
    QString endpoint;
    std::unique_ptr<AccessibleDesktop> desktop;
};

void EndToEndTest::startService()
{
    service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    service.start(QStringLiteral(QUILMORA_LOCAL_SERVICE_PROGRAM),
                  {u"--key"_s, u"a key"_s, u"--delay"_s, u"300"_s});
    while (!service.canReadLine()) {
        QVERIFY(service.waitForReadyRead());
    }
    endpoint = QString::fromUtf8(service.readLine()).trimmed().section(u' ', -1);
    QVERIFY(endpoint.startsWith(u"http://127.0.0.1:"_s));
}

void EndToEndTest::initTestCase()
{
    startService();
    DatabaseManager{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()}.saveConfig(
        endpoint, u"a key"_s, u"doubao-seedream-4-0-250828"_s);

    desktop = std::make_unique<AccessibleDesktop>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(qEnvironmentVariable("QUILMORA_TESTED_PROGRAM", QStringLiteral(QUILMORA_PROGRAM)),
                  QStringList{});
    QVERIFY(program.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"视频封面标题文本"_s), 30000);
}

void EndToEndTest::cleanupTestCase()
{
    program.kill();
    program.waitForFinished();
    service.terminate();
    QVERIFY(service.waitForFinished());
    QCOMPARE(service.exitCode(), 0);
}

void EndToEndTest::choosePicture(const QString &card, const QString &path)
{
    QVERIFY(desktop->act(card));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"选择图片"_s), 10000);
    QTRY_VERIFY(desktop->setText(u"文件名称(N)："_s, path));
    // A press that closes the panel may be answered too late to be told from a failed one.
    const auto isClosed = [this] {
        return !desktop->isShowing(u"选择图片"_s) || (desktop->act(u"打开(O)"_s), false);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isClosed(), 20000);
}

void EndToEndTest::aCoverIsMadeStoredAndRecorded()
{
    const QString photo = samplePictures::write(home.path(u"照片 'mine' 😀.jpg"_s),
                                                samplePictures::jpeg(samplePictures::picture({640, 640})));
    choosePicture(u"人脸形象（必填）"_s, photo);
    QTRY_VERIFY(desktop->isShowing(u"移除"_s));
    QVERIFY(!desktop->isUsable(u"开始生成封面"_s));
    QVERIFY(desktop->setText(u"视频封面标题文本"_s, u"标题"_s));
    QVERIFY(desktop->setText(u"背景场景"_s, u"海边"_s));
    QVERIFY(desktop->act(u"惊喜"_s));
    QTRY_VERIFY(desktop->isChecked(u"惊喜"_s));
    QVERIFY(!desktop->isChecked(u"震惊"_s));
    QVERIFY(desktop->act(u"经典"_s));

    QTRY_VERIFY(desktop->isUsable(u"开始生成封面"_s));
    QVERIFY(desktop->act(u"开始生成封面"_s));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"生成成功"_s), 60000);

    DatabaseManager database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    const QList<HistoryRecord> history = database.fetchAllHistory();
    QCOMPARE(history.size(), 1);
    QCOMPARE(history.first().prompt,
             u"生成一张视频封面图。 封面主标题文字：「标题」，标题需突出醒目、具有冲击力。 背景场景：海边。 "
             "人物表情：惊喜。 整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
    QCOMPARE(history.first().image().size(), QSize(2304, 1728));
}

void EndToEndTest::theCoverIsFoundAgainInTheHistory()
{
    DatabaseManager database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    const QString prompt = database.fetchAllHistory().constFirst().prompt;
    QVERIFY(desktop->act(u"已生成列表"_s));
    QTRY_VERIFY(desktop->isShowing(prompt));
    QVERIFY(desktop->isUsable(u"刷新"_s));
    QTRY_VERIFY(desktop->act(prompt));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"关闭预览"_s), 10000);
    QVERIFY(desktop->isShowing(u"封面"_s));
    QVERIFY(desktop->act(u"关闭"_s));
    QTRY_VERIFY(!desktop->isShowing(u"关闭预览"_s));
    // Gone from the disk, it is listed still, and asking for it again does no harm.
    QVERIFY(QFile::remove(userFolders::expandTilde(database.fetchAllHistory().constFirst().imagePath)));
    QVERIFY(desktop->act(u"刷新"_s));
    QTRY_VERIFY(desktop->isShowing(prompt));
    QVERIFY(desktop->act(prompt));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"关闭预览"_s), 10000);
    QVERIFY(!desktop->isShowing(u"封面"_s));
    QVERIFY(desktop->act(u"关闭预览"_s));
    QTRY_VERIFY(!desktop->isShowing(u"关闭预览"_s));
}

void EndToEndTest::whatWasTypedIsGoneAfterAVisitToAnotherTab()
{
    QVERIFY(desktop->act(u"功能设置"_s));
    QTRY_VERIFY(desktop->isShowing(u"保存设置"_s));
    QVERIFY(!desktop->isShowing(u"生成成功"_s));
    QVERIFY(desktop->act(u"保存设置"_s));
    QTRY_VERIFY(desktop->isShowing(u"火山引擎配置已成功保存"_s));
    QVERIFY(desktop->act(u"好的"_s));
    QTRY_VERIFY(!desktop->isShowing(u"火山引擎配置已成功保存"_s));
    QVERIFY(desktop->act(u"生成封面"_s));
    QTRY_VERIFY(desktop->isShowing(u"开始生成封面"_s));
    QVERIFY(!desktop->isUsable(u"开始生成封面"_s));
    QVERIFY(!desktop->isShowing(u"移除"_s));
}

void EndToEndTest::anAddressOnTheHelpTabIsCopied()
{
    const QString website = QStringLiteral(QUILMORA_WEBSITE);
    QVERIFY(desktop->act(u"帮助说明"_s));
    QTRY_VERIFY(desktop->isShowing(u"版本号：1.0.0"_s));
    QVERIFY(!desktop->isShowing(u"已复制："_s + website));
    QVERIFY(desktop->act(u"服务帮助："_s + website + u"（仅技术支持与使用说明）"_s));
    QTRY_VERIFY(desktop->isShowing(u"已复制："_s + website));
    QTRY_VERIFY(!desktop->isShowing(u"已复制："_s + website));
}

void EndToEndTest::standardOutputStaysEmpty()
{
    QCOMPARE(program.state(), QProcess::Running);
    QCOMPARE(program.readAllStandardOutput(), QByteArray{});
}

/// After a file dialog, whose preferences Qt would keep.
void EndToEndTest::noSettingsAreLeftBehind()
{
    program.terminate();
    QVERIFY(program.waitForFinished());
    QVERIFY(!QFile::exists(home.path(u".config/QtProject.conf"_s)));
}

QTEST_GUILESS_MAIN(EndToEndTest)
#include "EndToEndTest.moc"
