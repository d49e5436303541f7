#include "DesktopInput.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QLibraryInfo>
#include <QProcess>
#include <QVersionNumber>

using namespace quilmora;
using namespace quilmora::test;

/// The program where the desktop lacks something: it shows its window, or says why not and ends with
/// status 1.
class MinimalDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString configuration = samplePictures::write(m_home.path(u"bus.conf"_s), R"(<busconfig>
            <listen>unix:tmpdir=/tmp</listen>
            <policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy></busconfig>)");
        m_bus.start(u"dbus-daemon"_s,
                    {u"--nofork"_s, u"--print-address"_s, u"--config-file="_s + configuration});
        QVERIFY(m_bus.waitForReadyRead());
        m_busAddress = QString::fromUtf8(m_bus.readLine()).trimmed();
    }

    void cleanupTestCase()
    {
        m_bus.terminate();
        QVERIFY(m_bus.waitForFinished());
    }

    void theWindowComes_data()
    {
        const QString file = samplePictures::write(m_home.path(u"file"_s), "no folder");
        const QString noFonts = samplePictures::write(m_home.path(u"fonts.conf"_s),
                                                      "<fontconfig><dir>/nowhere</dir></fontconfig>");
        const auto folders = [](const QString &folder) {
            return QStringList{u"HOME="_s + folder, u"XDG_DATA_HOME"_s, u"XDG_STATE_HOME"_s,
                               u"XDG_CONFIG_HOME"_s, u"XDG_CACHE_HOME"_s};
        };
        const QString noDatabase = u"无法打开数据库: "_s;
        const QString noRuntimeFolder =
            QLibraryInfo::version() < QVersionNumber{6, 8} ? u"XDG_RUNTIME_DIR not set"_s : QString{};

        const DataRows<QStringList, QString> row{"variables", "output"};
        const QString bus = u"DBUS_SESSION_BUS_ADDRESS"_s;
        row("nothing is missing", {}, {});
        row("no accessibility bus",
            {u"AT_SPI_BUS_ADDRESS=unix:path=/nowhere"_s, u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"_s}, {});
        row("no service on the session bus", {bus + u'=' + m_busAddress}, {});
        row("no portal", {bus + u'=' + m_busAddress, u"QT_QPA_PLATFORMTHEME=xdgdesktopportal"_s}, {});
        row("no session bus", {bus + u"=unix:path=/nowhere"_s}, {});
        row("no address of a session bus", {bus}, {});
        row("no XDG_RUNTIME_DIR", {u"XDG_RUNTIME_DIR"_s}, noRuntimeFolder);
        row("no folder at XDG_RUNTIME_DIR", {u"XDG_RUNTIME_DIR=/nowhere"_s}, {});
        row("no fonts", {u"FONTCONFIG_FILE="_s + noFonts}, u"没有中文字体"_s);
        row("a file as home", folders(file), noDatabase);
        row("a home that cannot be written", folders(u"/proc"_s), noDatabase);
        row("no home", folders(u"/nowhere/home"_s).mid(1) + QStringList{u"HOME"_s}, {});
    }

    void theWindowComes()
    {
        QFETCH(const QStringList, variables);
        QFETCH(const QString, output);
        const QColor selectedTab{0x00, 0x7A, 0xFF};
        QTRY_VERIFY_WITH_TIMEOUT(desktopInput::pixelsOf(selectedTab).isEmpty(), desktopLimit);
        QProcess program;
        start(program, variables);
        QTRY_VERIFY_WITH_TIMEOUT(!desktopInput::pixelsOf(selectedTab).isEmpty(), desktopLimit);
        QCOMPARE(program.state(), QProcess::Running);
        program.terminate();
        QVERIFY(program.waitForFinished());
        const QString written = QString::fromUtf8(program.readAll());
        QVERIFY2(output.isEmpty() ? written.isEmpty() : written.contains(output) && written.count(u'\n') == 1,
                 qPrintable(written));
    }

    void itEndsWithoutADisplay_data()
    {
        const DataRows<QStringList> row{"variables"};
        row("none is named", {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s});
        row("none is there", {u"DISPLAY=:987"_s, u"WAYLAND_DISPLAY=/nowhere"_s});
        row("no folder of the Wayland display",
            {u"DISPLAY"_s, u"WAYLAND_DISPLAY=wayland-1"_s, u"XDG_RUNTIME_DIR"_s});
    }

    void itEndsWithoutADisplay()
    {
        QFETCH(const QStringList, variables);
        QProcess program;
        start(program, variables);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(program.readAll().contains("no Qt platform plugin could be initialized"));
    }

private:
    /// Starts the program with these variables, "NAME=VALUE", in its environment or without them, "NAME".
    static void start(QProcess &program, const QStringList &variables)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString &variable : variables) {
            const QString name = variable.section(u'=', 0, 0);
            environment.remove(name);
            if (variable.contains(u'=')) {
                environment.insert(name, variable.section(u'=', 1));
            }
        }
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(QUILMORA_PROGRAM), QStringList{});
        QVERIFY(program.waitForStarted());
    }

    const TemporaryHome m_home;
    QProcess m_bus;
    QString m_busAddress;
};

QUILMORA_TEST(MinimalDesktopTest, runCoreTest)
#include "MinimalDesktopTest.moc"
