#include "DesktopInput.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"

#include <QLibraryInfo>
#include <QProcess>
#include <QTest>
#include <QVersionNumber>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The program where the desktop lacks something: it shows its window, or says why not and ends with
/// status 1.
class PoorDesktopTour final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void theWindowComes_data();
    void theWindowComes();
    void itEndsWithoutADisplay_data();
    void itEndsWithoutADisplay();

private:
    /// The present environment with these variables, "NAME=VALUE", or without them, "NAME".
    static QProcessEnvironment changed(const QStringList &variables);
    void start(QProcess &program, const QStringList &variables);

    const TemporaryHome home;
    QProcess bus;
    QString busAddress;
};

void PoorDesktopTour::initTestCase()
{
    const QString configuration = samplePictures::write(home.path(u"bus.conf"_s), R"(<busconfig>
        <listen>unix:tmpdir=/tmp</listen>
        <policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy></busconfig>)");
    bus.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address"_s, u"--config-file="_s + configuration});
    QVERIFY(bus.waitForReadyRead());
    busAddress = QString::fromUtf8(bus.readLine()).trimmed();
}

void PoorDesktopTour::cleanupTestCase()
{
    bus.terminate();
    QVERIFY(bus.waitForFinished());
}

QProcessEnvironment PoorDesktopTour::changed(const QStringList &variables)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : variables) {
        const QString name = variable.section(u'=', 0, 0);
        environment.remove(name);
        if (variable.contains(u'=')) {
            environment.insert(name, variable.section(u'=', 1));
        }
    }
    return environment;
}

void PoorDesktopTour::start(QProcess &program, const QStringList &variables)
{
    program.setProcessEnvironment(changed(variables));
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(QUILMORA_PROGRAM), QStringList{});
    QVERIFY(program.waitForStarted());
}

void PoorDesktopTour::theWindowComes_data()
{
    const QString file = samplePictures::write(home.path(u"file"_s), "no folder");
    const QString noFonts =
        samplePictures::write(home.path(u"fonts.conf"_s), "<fontconfig><dir>/nowhere</dir></fontconfig>");
    const auto folders = [](const QString &folder) {
        return QStringList{u"HOME="_s + folder, u"XDG_DATA_HOME"_s, u"XDG_STATE_HOME"_s, u"XDG_CONFIG_HOME"_s,
                           u"XDG_CACHE_HOME"_s};
    };
    const QString noDatabase = u"无法打开数据库: "_s;
    const QString noRuntimeFolder =
        QLibraryInfo::version() < QVersionNumber{6, 8} ? u"XDG_RUNTIME_DIR not set"_s : QString{};

    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<QString>("said");
    QTest::newRow("nothing is missing") << QStringList{} << QString{};
    QTest::newRow("no accessibility bus")
        << QStringList{u"AT_SPI_BUS_ADDRESS=unix:path=/nowhere"_s, u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"_s}
        << QString{};
    QTest::newRow("no service on the session bus")
        << QStringList{u"DBUS_SESSION_BUS_ADDRESS="_s + busAddress} << QString{};
    QTest::newRow("no portal") << QStringList{u"DBUS_SESSION_BUS_ADDRESS="_s + busAddress,
                                              u"QT_QPA_PLATFORMTHEME=xdgdesktopportal"_s}
                               << QString{};
    QTest::newRow("no session bus") << QStringList{u"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere"_s}
                                    << QString{};
    QTest::newRow("no address of a session bus") << QStringList{u"DBUS_SESSION_BUS_ADDRESS"_s} << QString{};
    QTest::newRow("no XDG_RUNTIME_DIR") << QStringList{u"XDG_RUNTIME_DIR"_s} << noRuntimeFolder;
    QTest::newRow("no folder at XDG_RUNTIME_DIR") << QStringList{u"XDG_RUNTIME_DIR=/nowhere"_s} << QString{};
    QTest::newRow("no fonts") << QStringList{u"FONTCONFIG_FILE="_s + noFonts} << u"没有中文字体"_s;
    QTest::newRow("a file as home") << folders(file) << noDatabase;
    QTest::newRow("a home that cannot be written") << folders(u"/proc"_s) << noDatabase;
    QTest::newRow("no home") << folders(u"/nowhere/home"_s).mid(1) + QStringList{u"HOME"_s} << QString{};
}

void PoorDesktopTour::theWindowComes()
{
    QFETCH(const QStringList, variables);
    QFETCH(const QString, said);
    const QColor selectedTab{0x00, 0x7A, 0xFF};
    QTRY_VERIFY_WITH_TIMEOUT(desktopInput::pixelsOf(selectedTab).isEmpty(), desktopLimit);
    QProcess program;
    start(program, variables);
    QTRY_VERIFY_WITH_TIMEOUT(!desktopInput::pixelsOf(selectedTab).isEmpty(), desktopLimit);
    QCOMPARE(program.state(), QProcess::Running);
    program.terminate();
    QVERIFY(program.waitForFinished());
    const QString output = QString::fromUtf8(program.readAll());
    QVERIFY2(said.isEmpty() ? output.isEmpty() : output.contains(said) && output.count(u'\n') == 1,
             qPrintable(output));
}

void PoorDesktopTour::itEndsWithoutADisplay_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::newRow("none is named") << QStringList{u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s};
    QTest::newRow("none is there") << QStringList{u"DISPLAY=:987"_s, u"WAYLAND_DISPLAY=/nowhere"_s};
    QTest::newRow("no folder of the Wayland display")
        << QStringList{u"DISPLAY"_s, u"WAYLAND_DISPLAY=wayland-1"_s, u"XDG_RUNTIME_DIR"_s};
}

void PoorDesktopTour::itEndsWithoutADisplay()
{
    QFETCH(const QStringList, variables);
    QProcess program;
    start(program, variables);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 1);
    QVERIFY(program.readAll().contains("no Qt platform plugin could be initialized"));
}

QTEST_GUILESS_MAIN(PoorDesktopTour)
#include "PoorDesktopTour.moc"
