#include "app/MainView.h"
#include "app/NavTabButton.h"
#include "app/QuilmoraApp.h"
#include "generation/GenerationProbe.h"
#include "screens/history/HistoryGrid.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/ChildProcess.h"
#include "support/DatabaseHolder.h"
#include "support/ScreenTest.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QLineEdit>

#include <cstdio>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// What is done to the files of a home folder.
using Fault = std::function<void(const TemporaryHome &home)>;

const Fault none = [](const TemporaryHome &) {
};

QString databaseIn(const TemporaryHome &home)
{
    return home.path(u".local/share/Quilmora/quilmora.db"_s);
}

void replaceDatabase(const TemporaryHome &home, const std::function<void(const QString &path)> &make)
{
    QFile::remove(databaseIn(home));
    make(databaseIn(home));
}

/// The application in this process, worked by its window as a user does.
class WorkedWindow final
{
public:
    WorkedWindow(int &argc, char **argv) : application{argc, argv} { application.openMainWindow(); }

    bool isOpen() { return QTest::qWaitForWindowActive(application.mainWindow()); }

    void saveSettings(const QString &address)
    {
        select(u"功能设置"_s);
        typeInto(field(u"API URL"_s), address);
        typeInto(field(u"API Key"_s), u"key"_s);
        click(find(u"保存设置"_s));
        wait([this] { return find(u"好的"_s) != nullptr; });
        click(find(u"好的"_s));
        wait([this] { return find(u"好的"_s) == nullptr; });
    }

    /// Gives the title of the outcome.
    QString makeCover()
    {
        select(u"生成封面"_s);
        typeInto(field(u"视频封面标题文本"_s), u"标题"_s);
        click(find(u"开始生成封面"_s));
        wait([this] { return find(u"生成成功"_s) != nullptr || find(u"生成失败"_s) != nullptr; });
        return find(u"生成成功"_s) != nullptr ? u"生成成功"_s : u"生成失败"_s;
    }

    int coversInHistory()
    {
        select(u"已生成列表"_s);
        const auto *grid = application.mainWindow()->findChild<HistoryGrid *>();
        return grid == nullptr ? 0 : grid->model()->rowCount();
    }

    bool helps()
    {
        select(u"帮助说明"_s);
        return find(u"版本号：1.0.0"_s) != nullptr;
    }

private:
    void select(const QString &tab)
    {
        click(accessible::find<NavTabButton>(application.mainWindow(), tab));
        QCoreApplication::processEvents();
    }
    QWidget *find(const QString &name)
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (QWidget *found = window->isVisible() ? accessible::find(window, name) : nullptr) {
                return found;
            }
        }
        return nullptr;
    }
    QLineEdit *field(const QString &name)
    {
        return accessible::find<QLineEdit>(application.mainWindow(), name);
    }
    static void wait(const std::function<bool()> &isSo)
    {
        if (!QTest::qWaitFor(isSo)) {
            qFatal("The window does not go on");
        }
    }

    QuilmoraApp application;
};

} // namespace

/// The application's window with a store that fails: every screen can be used, and standard output has the
/// store's lines and nothing else. Each row is an application of its own, in a copy of this process, which is
/// ended when it hangs.
class StoreFaultsWindowTest final : public QObject
{
    Q_OBJECT

public:
    StoreFaultsWindowTest(int &theCount, char **theArguments)
        : argumentCount{theCount},
          arguments{theArguments}
    {
    }

private Q_SLOTS:
    void theWindowStaysUsable_data();
    void theWindowStaysUsable();

private:
    int &argumentCount;
    char **const arguments;
};

void StoreFaultsWindowTest::theWindowStaysUsable_data()
{
    QTest::addColumn<Fault>("before");  ///< The first window.
    QTest::addColumn<Fault>("running"); ///< Once the settings were saved.
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArray>("outcome");
    const QByteArray made{"生成成功, 1 covers\n"};
    const QByteArray madeButLost{"生成成功, 0 covers\n"};
    const QByteArray refused{"生成失败, 0 covers\n"};
    QTest::newRow("no fault") << none << none << QByteArray{} << made;
    QTest::newRow("no database") << Fault{[](const TemporaryHome &home) {
        replaceDatabase(home, [](auto) {});
    }} << none << QByteArray{} << made;
    QTest::newRow("an empty database") << Fault{[](const TemporaryHome &home) {
        replaceDatabase(home, [](const QString &path) { samplePictures::write(path, {}); });
    }} << none << QByteArray{} << made;
    QTest::newRow("a folder") << Fault{[](const TemporaryHome &home) {
        replaceDatabase(home, [](const QString &path) { QDir{}.mkpath(path); });
    }} << none << QByteArray{"无法打开数据库: "}
                              << refused;
    QTest::newRow("a pipe") << Fault{[](const TemporaryHome &home) {
        replaceDatabase(home, [](const QString &path) {
            if (mkfifo(QFile::encodeName(path).constData(), 0600) != 0) {
                qFatal("Cannot make a pipe");
            }
        });
    }} << none << QByteArray{"无法打开数据库: "}
                            << refused;
    QTest::newRow("another program's file") << Fault{[](const TemporaryHome &home) {
        replaceDatabase(home,
                        [](const QString &path) { samplePictures::write(path, QByteArray(3000, 'x')); });
    }} << none << QByteArray{"SQL 错误: file is not a database\n"}.repeated(4)
                                            << refused;
    QTest::newRow("a database that goes") << none << Fault{[](const TemporaryHome &home) {
        replaceDatabase(home, [](auto) {});
    }} << QByteArray{"SQL 错误: attempt to write a readonly database\n"}
                                          << madeButLost;
    QTest::newRow("a database that another program holds for a second")
        << none << Fault{[](const TemporaryHome &home) {
               // Goes with the copy of the process in which it is made.
               static const DatabaseHolder holder{databaseIn(home), DatabaseHolder::Lock::exclusive,
                                                  std::chrono::seconds{1}};
           }}
        << QByteArray{} << made;
    QTest::newRow("a folder of covers that goes") << none << Fault{[](const TemporaryHome &home) {
        QDir{home.path(u"Pictures"_s)}.removeRecursively();
    }} << QByteArray{"保存图片失败: 此文件或目录不存在\n"}
                                                  << madeButLost;
    QTest::newRow("no folder of covers") << Fault{[](const TemporaryHome &home) {
        QDir{home.path(u"Pictures"_s)}.removeRecursively();
    }} << none << QByteArray{} << made;
    QTest::newRow("a file in the place of the folder of covers") << Fault{[](const TemporaryHome &home) {
        QDir{home.path(u"Pictures"_s)}.removeRecursively();
        samplePictures::write(home.path(u"Pictures"_s), "somebody's");
    }} << none << QByteArray{"保存图片失败: "} << madeButLost;
}

void StoreFaultsWindowTest::theWindowStaysUsable()
{
    QFETCH(const Fault, before);
    QFETCH(const Fault, running);
    QFETCH(const QByteArray, lines);
    QFETCH(const QByteArray, outcome);
    const TemporaryHome home;
    {
        const DatabaseManager former{QFileInfo{databaseIn(home)}.path(), coversFolder::path()};
    }
    QDir{}.mkpath(coversFolder::path());
    before(home);
    const auto copy = childProcess::run([&] {
        WorkedWindow window{argumentCount, arguments};
        if (!window.isOpen()) {
            _exit(1);
        }
        ScriptedHttpServer server{[](const ReceivedRequest &) {
            return ScriptedAnswer::whole(pictureAnswer());
        }};
        window.saveSettings(server.url().toString());
        running(home);
        const QString title = window.makeCover();
        const int covers = window.coversInHistory();
        std::printf("%s, %d covers\n", qPrintable(title), covers);
        std::fflush(stdout);
        _exit(window.helps() ? 0 : 2);
    });
    QCOMPARE(copy.signal, 0);
    QCOMPARE(copy.exitCode, 0);
    // Where the line ends with a path or with the system's words, those are left to the tests of the store.
    QVERIFY2(copy.standardOutput.startsWith(lines) && copy.standardOutput.endsWith(outcome),
             copy.standardOutput.constData());
    const qsizetype rest = copy.standardOutput.size() - lines.size() - outcome.size();
    QVERIFY2(lines.endsWith('\n') || lines.isEmpty() ? rest == 0 : copy.standardOutput.count('\n') == 2,
             copy.standardOutput.constData());
}

/// Without an application: each copy makes one of its own.
int main(int argc, char *argv[])
{
    StoreFaultsWindowTest test{argc, argv};
    return QTest::qExec(&test, argc, argv);
}

#include "StoreFaultsWindowTest.moc"
