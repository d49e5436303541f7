#include "ApplicationTest.h"
#include "generation/GenerationProbe.h"
#include "screens/history/HistoryGrid.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/ChildProcess.h"
#include "support/DatabaseLocker.h"

#include <QDir>

#include <cstdio>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// What is done to the files of a home folder.
using Fault = std::function<void(const TemporaryHome &home)>;

const Fault none = [](const TemporaryHome &) {
};

QString databaseIn(const TemporaryHome &home) { return home.path(u".local/share/Quilmora/quilmora.db"_s); }

/// The application in this process, worked by its window as a user does.
class WorkedWindow final : private ApplicationWindow
{
public:
    explicit WorkedWindow(QuilmoraApp &application) : ApplicationWindow{application}
    {
        m_application.openMainWindow();
    }

    bool isOpen() const { return QTest::qWaitForWindowActive(window()); }

    void saveSettings(const QString &address)
    {
        select(NavigationTab::settings);
        typeInto(field(texts::apiURL), address);
        typeInto(field(texts::apiKey), u"key"_s);
        click(find(texts::saveSettings));
        wait([this] { return find(texts::confirm) != nullptr; });
        click(find(texts::confirm));
        wait([this] { return find(texts::confirm) == nullptr; });
    }

    /// Gives the title of the outcome.
    QString makeCover()
    {
        select(NavigationTab::generate);
        typeInto(field(texts::title), u"标题"_s);
        click(find(texts::start));
        wait([this] { return find(texts::succeeded) != nullptr || find(texts::failed) != nullptr; });
        return find(texts::succeeded) != nullptr ? texts::succeeded : texts::failed;
    }

    int coversInHistory()
    {
        select(NavigationTab::history);
        const auto *grid = window()->findChild<HistoryGrid *>();
        return grid == nullptr ? 0 : grid->model()->rowCount();
    }

    bool helps()
    {
        select(NavigationTab::help);
        return find(u"版本号：1.0.0"_s) != nullptr;
    }

private:
    static void wait(const std::function<bool()> &isSo)
    {
        if (!QTest::qWaitFor(isSo)) {
            qFatal("The window does not go on");
        }
    }
};

/// Without an application: each copy of the process makes one of its own.
template <typename Test>
int runWithoutApplication(int argc, char **argv)
{
    Test test{argc, argv};
    return QTest::qExec(&test, argc, argv);
}

} // namespace

/// The application's window with a store that fails: every screen can be used, and standard output has the
/// store's lines and nothing else. Each row is an application of its own, in a copy of this process, which is
/// ended when it hangs.
class StoreFaultsWindowTest final : public QObject
{
    Q_OBJECT

public:
    StoreFaultsWindowTest(int &count, char **arguments) : m_argumentCount{count}, m_arguments{arguments} {}

private Q_SLOTS:
    void theWindowStaysUsable_data()
    {
        QTest::addColumn<Fault>("before");  ///< The first window.
        QTest::addColumn<Fault>("running"); ///< Once the settings were saved.
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QByteArray>("outcome");
        const QByteArray made{"生成成功, 1 covers\n"};
        const QByteArray madeButLost{"生成成功, 0 covers\n"};
        const QByteArray refused{"生成失败, 0 covers\n"};
        const auto atStart = [](const char *name, const Fault &fault, const QByteArray &lines,
                                const QByteArray &outcome) {
            QTest::newRow(name) << fault << none << lines << outcome;
        };
        const auto later = [](const char *name, const Fault &fault, const QByteArray &lines,
                              const QByteArray &outcome) {
            QTest::newRow(name) << none << fault << lines << outcome;
        };
        const Fault removeDatabase = [](const TemporaryHome &home) {
            QFile::remove(databaseIn(home));
        };
        const Fault removePictures = [](const TemporaryHome &home) {
            QDir{home.path(u"Pictures"_s)}.removeRecursively();
        };
        const auto replaceDatabase = [=](const std::function<void(const QString &)> &make) {
            return Fault{[=](const TemporaryHome &home) {
                removeDatabase(home);
                make(databaseIn(home));
            }};
        };
        atStart("no fault", none, {}, made);
        atStart("no database", removeDatabase, {}, made);
        atStart("an empty database",
                replaceDatabase([](const QString &path) { samplePictures::write(path, {}); }), {}, made);
        atStart("a folder", replaceDatabase([](const QString &path) { QDir{}.mkpath(path); }),
                "无法打开数据库: ", refused);
        atStart("a pipe", replaceDatabase([](const QString &path) {
                    if (mkfifo(QFile::encodeName(path).constData(), 0600) != 0) {
                        qFatal("Cannot make a pipe");
                    }
                }),
                "无法打开数据库: ", refused);
        atStart("another program's file", replaceDatabase([](const QString &path) {
                    samplePictures::write(path, QByteArray(3000, 'x'));
                }),
                QByteArray{"SQL 错误: file is not a database\n"}.repeated(4), refused);
        later("a database that goes", removeDatabase, "SQL 错误: attempt to write a readonly database\n",
              madeButLost);
        later(
            "a database that another program holds for a second",
            [](const TemporaryHome &home) {
                // Goes with the copy of the process in which it is made.
                static const DatabaseLocker holder{databaseIn(home), DatabaseLocker::Lock::exclusive,
                                                   std::chrono::seconds{1}};
            },
            {}, made);
        later("a folder of covers that goes", removePictures, "保存图片失败: 此文件或目录不存在\n",
              madeButLost);
        atStart("no folder of covers", removePictures, {}, made);
        atStart(
            "a file in the place of the folder of covers",
            [removePictures](const TemporaryHome &home) {
                removePictures(home);
                samplePictures::write(home.path(u"Pictures"_s), "somebody's");
            },
            "保存图片失败: ", madeButLost);
    }

    void theWindowStaysUsable()
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
            QuilmoraApp application{m_argumentCount, m_arguments};
            WorkedWindow window{application};
            if (!window.isOpen()) {
                _exit(1);
            }
            ScriptedHttpServer server{[](const ReceivedRequest &) {
                return ScriptedResponse::whole(pictureAnswer());
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
        // Where the line ends with a path or with the system's words, those are left to the tests of the
        // store.
        QVERIFY2(copy.standardOutput.startsWith(lines) && copy.standardOutput.endsWith(outcome),
                 copy.standardOutput.constData());
        const qsizetype rest = copy.standardOutput.size() - lines.size() - outcome.size();
        QVERIFY2(lines.endsWith('\n') || lines.isEmpty() ? rest == 0 : copy.standardOutput.count('\n') == 2,
                 copy.standardOutput.constData());
    }

private:
    int &m_argumentCount;
    char **const m_arguments;
};

QUILMORA_TEST(StoreFaultsWindowTest, runWithoutApplication)
#include "StoreFaultsWindowTest.moc"
