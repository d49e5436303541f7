#include "GenerateScreen.h"
#include "screens/common/Sheet.h"
#include "screens/help/HelpView.h"
#include "screens/history/HistoryListView.h"
#include "screens/history/ThumbnailCache.h"
#include "screens/settings/SettingsView.h"
#include "support/SamplePictures.h"

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
    static QStringList texts;
    return texts;
}

/// What a screen reader says by itself: notifications and dialogs that come into sight.
void listen(QAccessibleEvent *event)
{
    QAccessibleInterface *piece = event->accessibleInterface();
    if (event->type() == QAccessible::ObjectShow && piece != nullptr && piece->isValid() &&
        (piece->role() == QAccessible::Notification || piece->role() == QAccessible::Dialog)) {
        const QString description = piece->text(QAccessible::Description);
        heard() << piece->text(QAccessible::Name) + (description.isEmpty() ? u""_s : u"。"_s + description);
    }
}

/// Whether nothing that contains the focus has a name that was heard: it would be said again for the focus.
bool saysNothingTwice()
{
    const QAccessibleInterface *piece = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
    for (; piece != nullptr; piece = piece->parent()) {
        const QString name = piece->text(QAccessible::Name);
        if (!name.isEmpty() && !heard().filter(name).isEmpty()) {
            return false;
        }
    }
    return true;
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
    void aFailedGenerationSaysWhy();
    void ofALongReasonTheBeginningIsSaid();
    void aRemovedPictureIsSaid();
    void openingAndClosingTheAdvancedOptionsIsSaid();
    void anEmptyHistoryIsSaid();
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
    const QString begun = u"正在生成封面...。请稍候，火山引擎正在生成中"_s;
    QCOMPARE(heard(), QStringList{begun});
    QVERIFY(saysNothingTwice());
    QTRY_COMPARE(heard(), (QStringList{begun, u"生成成功"_s}));
    QVERIFY(saysNothingTwice());
}

void AnnouncementTest::aFailedGenerationSaysWhy()
{
    GenerateScreen screen{GenerateScreen::answerWithText(R"({"error":{"code":"Busy","message":"稍后"}})")};
    screen.generate(u"标题"_s);
    QTRY_COMPARE(heard().size(), 2);
    QCOMPARE(heard().constLast(), u"生成失败。[Busy] 稍后"_s);
    QVERIFY(saysNothingTwice());
}

void AnnouncementTest::ofALongReasonTheBeginningIsSaid()
{
    GenerateScreen screen{GenerateScreen::answerWithText("<p>" + QByteArray(100'000, 'x') + "</p>")};
    screen.generate(u"标题"_s);
    QTRY_COMPARE(heard().size(), 2);
    const QString &failed = heard().constLast();
    QVERIFY2(failed.startsWith(u"生成失败。"_s) && failed.contains(u"<p>xxx"_s), qPrintable(failed.left(80)));
    QVERIFY(failed.endsWith(u"x…"_s));
    QVERIFY(failed.size() < 1300);
}

void AnnouncementTest::aRemovedPictureIsSaid()
{
    GenerateScreen screen;
    screen.panels.answerReference(samplePictures::write(
        screen.home.path(u"a.png"_s), samplePictures::png(samplePictures::picture({60, 40}))));
    click(screen.find<QAbstractButton>(u"人脸形象（必填）"_s));
    QCOMPARE(heard(), QStringList{});
    click(screen.find<QAbstractButton>(u"移除"_s));
    QCOMPARE(heard(), QStringList{u"已移除"_s});
}

void AnnouncementTest::openingAndClosingTheAdvancedOptionsIsSaid()
{
    GenerateScreen screen;
    auto *header = screen.find<QAbstractButton>(u"高级选项"_s);
    const QAccessibleInterface *piece = accessible::interfaceOf(header);
    QVERIFY(piece->state().expanded);
    click(header);
    QVERIFY(piece->state().collapsed);
    QCOMPARE(heard(), QStringList{u"已收起"_s});
    click(header);
    QVERIFY(piece->state().expanded);
    QCOMPARE(heard(), (QStringList{u"已收起"_s, u"已展开"_s}));
    // The state says it already when the focus comes.
    QCOMPARE(piece->text(QAccessible::Description), QString{});
}

void AnnouncementTest::anEmptyHistoryIsSaid()
{
    const TemporaryHome home;
    DatabaseManager database{home.path(u"data"_s), home.path(u"covers"_s)};
    ScriptedFilePanels panels;
    ThumbnailCache thumbnails;
    HistoryListView view{database, panels, thumbnails};
    showWindow(view, {1000, 640});
    QCOMPARE(heard(), QStringList{u"暂无生成记录。前往「生成封面」开始创作吧"_s});
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
    // Not once more when the form comes back.
    screen.database.saveConfig(screen.server.url().toString(), {}, u"m"_s);
    screen.generate(u"标题"_s);
    heard().clear();
    click(screen.find<QAbstractButton>(u"返回表单"_s));
    QVERIFY(screen.shows(message));
    QCOMPARE(heard(), QStringList{});
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
    QTRY_COMPARE(heard(), (QStringList{u"请填写 API Key"_s, u"已保存。火山引擎配置已成功保存"_s}));
    openSheet()->close();
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
