#include "support/GenerateScreen.h"
#include "support/HelpScreen.h"
#include "support/HistoryScreen.h"
#include "support/SamplePictures.h"
#include "support/SettingsScreen.h"

#include <QRegularExpression>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <private/qguiapplication_p.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

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

/// Changes of state that a screen reader announces.
class AnnouncementTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // As when a screen reader has come.
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
        QAccessible::installUpdateHandler(listen);
    }

    void init() { heard().clear(); }
    void cleanupTestCase() { QAccessible::installUpdateHandler(nullptr); }

    void aGenerationSaysThatItBeganAndIsDone()
    {
        GenerateScreen screen;
        screen.generate();
        const QString begun = texts::generating + u"。"_s + texts::generatingHint;
        QCOMPARE(heard(), QStringList{begun});
        QVERIFY(saysNothingTwice());
        QTRY_COMPARE(heard(), (QStringList{begun, texts::succeeded}));
        QVERIFY(saysNothingTwice());
    }

    void aFailedGenerationSaysWhy()
    {
        GenerateScreen screen{GenerateScreen::respondWithError()};
        screen.generate();
        QTRY_COMPARE(heard().size(), 2);
        QCOMPARE(heard().constLast(), u"生成失败。[Busy] 稍后"_s);
        QVERIFY(saysNothingTwice());
        // Of a long reason the beginning is said.
        GenerateScreen other{GenerateScreen::respondWithText("<p>" + QByteArray(100'000, 'x') + "</p>")};
        other.generate();
        QTRY_COMPARE(heard().size(), 4);
        static const QRegularExpression expected{u"^生成失败。.*<p>xxx.*x…$"_s};
        QVERIFY2(expected.match(heard().constLast()).hasMatch(), qPrintable(heard().constLast().left(80)));
        QVERIFY(heard().constLast().size() < 1300);
    }

    void removingAPictureAndFoldingTheAdvancedOptionsIsSaid()
    {
        GenerateScreen screen;
        screen.pick(screen.facePhoto(), {60, 40});
        QCOMPARE(heard(), QStringList{});
        click(screen.find(texts::remove));
        QCOMPARE(heard(), QStringList{u"已移除"_s});
        heard().clear();
        auto *header = screen.find<QAbstractButton>(texts::advancedOptions);
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

    void anEmptyHistoryIsSaid()
    {
        HistoryScreen screen;
        screen.open();
        QCOMPARE(heard(), QStringList{texts::noCovers + u"。"_s + texts::noCoversHint});
    }

    void aRefusedPictureIsSaidEveryTime()
    {
        GenerateScreen screen;
        const QString path = screen.home.path(u"large.png"_s);
        samplePictures::write(path, QByteArray(qsizetype{15} * 1024 * 1024, 'x'));
        auto *card = screen.facePhoto();
        const QString message = u"图片过大（15.0M），不能超过 10M"_s;
        for (int times = 1; times <= 2; ++times) {
            screen.panels.answerReference(path);
            click(card);
            QCOMPARE(heard(), QStringList(times, message));
        }
        // Not once more when the form comes back.
        screen.database.saveConfig(screen.server.url().toString(), {}, u"m"_s);
        screen.generate();
        heard().clear();
        screen.goBack();
        QVERIFY(screen.shows(message));
        QCOMPARE(heard(), QStringList{});
    }

    void aMissingSettingIsSaidAndASavedOneToo()
    {
        SettingsScreen screen;
        heard().clear();
        screen.save();
        QCOMPARE(heard(), QStringList{u"请填写 API Key"_s});
        typeInto(screen.field(texts::apiKey), u"key"_s);
        screen.save();
        QTRY_COMPARE(heard(),
                     (QStringList{u"请填写 API Key"_s, texts::saved + u"。"_s + texts::savedMessage}));
        QVERIFY(SettingsScreen::closeAlert());
    }

    void aCopiedAddressIsSaidEveryTime()
    {
        HelpScreen screen{HelpScreen::sample()};
        heard().clear();
        for (int times = 1; times <= 2; ++times) {
            click(screen.emailLine());
            QCOMPARE(heard(), QStringList(times, u"已复制："_s + HelpScreen::sample().email));
        }
    }
};

QUILMORA_TEST(AnnouncementTest, runScreenTest)
#include "AnnouncementTest.moc"
