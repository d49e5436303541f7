#include "GenerateScreen.h"
#include "screens/help/HelpView.h"
#include "screens/settings/SettingsView.h"
#include "support/SamplePictures.h"

#include <QDialog>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <private/qguiapplication_p.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

QStringList &heard()
{
    static QStringList names;
    return names;
}

/// What a screen reader says by itself: notifications and panels that come into sight.
void listen(QAccessibleEvent *event)
{
    QAccessibleInterface *piece = event->accessibleInterface();
    if (event->type() == QAccessible::ObjectShow && piece != nullptr && piece->isValid() &&
        (piece->role() == QAccessible::Notification || piece->role() == QAccessible::Dialog)) {
        heard() << piece->text(QAccessible::Name);
    }
}

} // namespace

/// Changes of state that whoever does not see the window has to be told.
class AnnouncementTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { heard().clear(); }
    void cleanupTestCase() { QAccessible::installUpdateHandler(nullptr); }
    void aGenerationSaysThatItBeganAndIsDone();
    void aGenerationSaysThatItFailed();
    void aRefusedPictureIsSaidEveryTime();
    void aMissingSettingIsSaidAndASavedOneToo();
    void aCopiedAddressIsSaidEveryTime();
};

void AnnouncementTest::initTestCase()
{
    // As when a screen reader has come.
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
    QAccessible::installUpdateHandler(listen);
}

void AnnouncementTest::aGenerationSaysThatItBeganAndIsDone()
{
    GenerateScreen screen;
    screen.generate(u"标题"_s);
    QCOMPARE(heard(), QStringList{u"正在生成封面..."_s});
    QTRY_COMPARE(heard(), (QStringList{u"正在生成封面..."_s, u"生成成功"_s}));
}

void AnnouncementTest::aGenerationSaysThatItFailed()
{
    GenerateScreen screen{GenerateScreen::answerWithText(R"({"error":{"code":"Busy","message":"稍后"}})")};
    screen.generate(u"标题"_s);
    QTRY_COMPARE(heard(), (QStringList{u"正在生成封面..."_s, u"生成失败"_s}));
}

void AnnouncementTest::aRefusedPictureIsSaidEveryTime()
{
    GenerateScreen screen;
    const QString path = screen.home.path(u"large.png"_s);
    samplePictures::write(path, QByteArray(qsizetype{15} * 1024 * 1024, 'x'));
    auto *card = screen.find<QAbstractButton>(u"人脸形象（必填）"_s);
    const QString message = u"图片过大（15.0M），不能超过 10M"_s;
    for (int times = 1; times <= 2; ++times) {
        screen.panels.answerReference(path);
        click(card);
        QCOMPARE(heard(), QStringList(times, message));
    }
}

void AnnouncementTest::aMissingSettingIsSaidAndASavedOneToo()
{
    const TemporaryHome home;
    DatabaseManager database{home.path(u"data"_s), home.path(u"covers"_s)};
    SettingsView view{database};
    showWindow(view, {1000, 640});
    heard().clear();
    auto *save = accessible::find<QAbstractButton>(&view, u"保存设置"_s);
    click(save);
    QCOMPARE(heard(), QStringList{u"请填写 API Key"_s});
    typeInto(accessible::findField(&view, u"API Key"_s), u"key"_s);
    click(save);
    QTRY_COMPARE(heard(), (QStringList{u"请填写 API Key"_s, u"已保存"_s}));
    qobject_cast<QDialog *>(QApplication::activeModalWidget())->reject();
}

void AnnouncementTest::aCopiedAddressIsSaidEveryTime()
{
    HelpView view{HelpContents::ofThisBuild()};
    showWindow(view, {1000, 640});
    heard().clear();
    const QString email = HelpContents::ofThisBuild().email;
    auto *line = accessible::find<QAbstractButton>(&view, u"客服邮箱："_s + email);
    for (int times = 1; times <= 2; ++times) {
        click(line);
        QCOMPARE(heard(), QStringList(times, u"已复制："_s + email));
    }
}

int main(int argc, char **argv)
{
    return runScreenTest<AnnouncementTest>(argc, argv);
}

#include "AnnouncementTest.moc"
