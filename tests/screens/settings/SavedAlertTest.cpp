#include "screens/common/Sheet.h"
#include "screens/settings/SettingsView.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/DatabaseFile.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/StandardOutput.h"

#include <QAbstractButton>
#include <QPointer>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The alert that confirms a save.
class SavedAlertTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void savingConfirmsEveryTime();
    void aFailedWriteIsConfirmedToo();
    void itsCornersAreRound();
    void theConfirmationClosesByItsButtonReturnAndEscape();
    void cleanup();

private:
    void save() { click(accessible::find<QAbstractButton>(window.get(), u"保存设置"_s)); }
    static Sheet *alert() { return openSheet(); }
    static void closeAlert();

    std::unique_ptr<TemporaryHome> home;
    std::unique_ptr<DatabaseManager> database;
    std::unique_ptr<QWidget> window;
};

void SavedAlertTest::init()
{
    home = std::make_unique<TemporaryHome>();
    database = std::make_unique<DatabaseManager>(home->path(u"data"_s), home->path(u"covers"_s));
    database->saveConfig(u"u"_s, u"k"_s, u"m"_s);
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    column->addWidget(new SettingsView{*database, window.get()});
    showWindow(*window, {1000, 640});
}

void SavedAlertTest::cleanup()
{
    window.reset();
    database.reset();
}

void SavedAlertTest::closeAlert()
{
    click(accessible::find<QAbstractButton>(alert(), u"好的"_s));
    QTRY_VERIFY(alert() == nullptr);
}

void SavedAlertTest::savingConfirmsEveryTime()
{
    for (int round = 0; round < 2; ++round) {
        save();
        QTRY_VERIFY(alert() != nullptr);
        const QStringList names = accessible::names(alert());
        QVERIFY(names.contains(u"已保存"_s));
        QVERIFY(names.contains(u"火山引擎配置已成功保存"_s));
        QCOMPARE(alert()->findChildren<QAbstractButton *>().size(), 1);
        closeAlert();
    }
}

void SavedAlertTest::aFailedWriteIsConfirmedToo()
{
    databaseFile::run(home->path(u"data/quilmora.db"_s), "DROP TABLE volc_config");
    QCOMPARE(standardOutputOf([this] { save(); }), QByteArray{"SQL 错误: no such table: volc_config\n"});
    QTRY_VERIFY(alert() != nullptr);
    QVERIFY(accessible::names(alert()).contains(u"火山引擎配置已成功保存"_s));
    closeAlert();
}

void SavedAlertTest::itsCornersAreRound()
{
    save();
    QTRY_VERIFY(alert() != nullptr);
    const QImage face =
        screenCapture::capture(accessible::find<QAbstractButton>(alert(), u"好的"_s)->parentWidget());
    for (const QPoint corner : {face.rect().topLeft(), face.rect().topRight(), face.rect().bottomLeft(),
                                face.rect().bottomRight()}) {
        QCOMPARE(face.pixelColor(corner).alpha(), 0);
    }
    QCOMPARE(face.pixelColor(face.width() / 2, 4), QColor(0xECECECU));
    closeAlert();
}

void SavedAlertTest::theConfirmationClosesByItsButtonReturnAndEscape()
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Space}) {
        save();
        QTRY_VERIFY(alert() != nullptr);
        const QPointer<Sheet> open{alert()};
        QTRY_COMPARE(QApplication::focusWidget(), accessible::find<QAbstractButton>(open, u"好的"_s));
        QTest::keyClick(QApplication::focusWidget(), key);
        QTRY_VERIFY(open.isNull());
    }
}

int main(int argc, char *argv[])
{
    return runScreenTest<SavedAlertTest>(argc, argv);
}

#include "SavedAlertTest.moc"
