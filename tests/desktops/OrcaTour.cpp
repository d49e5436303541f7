#include "DesktopInput.h"
#include "ProgramOnDesktop.h"
#include "SpeechLog.h"
#include "Transcript.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"

#include <QProcess>
#include <QTest>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// What the screen reader Orca speaks while the program is used by keyboard, against OrcaTour.txt.
class OrcaTour final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void itIsSpoken_data();
    void itIsSpoken();

private:
    void act(const QString &action);

    const TemporaryHome home;
    const Transcript transcript{QStringLiteral(TRANSCRIPT)};
    SpeechLog speech;
    QProcess service;
    std::optional<ProgramOnDesktop> program;
    bool lost = false; ///< Somewhere else in the program than the transcript says.
};

void OrcaTour::initTestCase()
{
    samplePictures::write(home.path(u"photo.png"_s), samplePictures::png(samplePictures::picture({64, 64})));
    samplePictures::write(home.path(u"large.png"_s), QByteArray(qsizetype{12} * 1024 * 1024, 'x'));
    service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Slow enough for the progress to be spoken.
    service.start(QStringLiteral(QUILMORA_LOCAL_SERVICE_PROGRAM),
                  {u"--key"_s, u"k"_s, u"--delay"_s, u"1500"_s});
    while (!service.canReadLine()) {
        QVERIFY(service.waitForReadyRead());
    }
    const QString endpoint = QString::fromUtf8(service.readLine()).trimmed().section(u' ', -1);
    DatabaseManager{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()}.saveConfig(
        endpoint, {}, u"doubao-seedream-4-0-250828"_s);
    speech.waitUntilQuiet();
}

void OrcaTour::cleanupTestCase()
{
    program.reset();
    service.terminate();
    QVERIFY(service.waitForFinished());
}

void OrcaTour::act(const QString &action)
{
    const QString verb = action.section(u' ', 0, 0);
    const QString object = action.section(u' ', 1);
    if (verb == u"open"_s) {
        program.emplace();
    } else if (verb == u"choose"_s) {
        QTRY_VERIFY_WITH_TIMEOUT(program->desktop().setText(u"文件名称(N)："_s, home.path(object)),
                                 desktopLimit);
        desktopInput::press(u"Return"_s);
    } else if (verb == u"press"_s) {
        desktopInput::press(object);
    } else {
        QCOMPARE(verb, u"type"_s);
        desktopInput::type(object);
    }
}

void OrcaTour::itIsSpoken_data()
{
    QTest::addColumn<QList<Transcript::Step>>("steps");
    for (const Transcript::Chapter &chapter : transcript.chapters()) {
        QTest::newRow(qUtf8Printable(chapter.name)) << chapter.steps;
    }
}

void OrcaTour::itIsSpoken()
{
    QFETCH(const QList<Transcript::Step>, steps);
    QVERIFY2(!std::exchange(lost, true), "an earlier chapter has failed");
    for (const Transcript::Step &step : steps) {
        speech.forget();
        act(step.action);
        if (QTest::currentTestFailed()) {
            return;
        }
        QStringList expected = step.heard;
        expected.sort();
        const auto heard = [this] {
            QStringList texts = transcript.textsIn(speech.spoken().join(u'\n'));
            texts.sort();
            return texts;
        };
        (void)QTest::qWaitFor([&] { return heard().size() >= expected.size(); }, 15'000);
        // Nothing may come after it.
        speech.waitUntilQuiet();
        const QStringList report{u"> "_s + step.action, u"expected:"_s, step.heard.join(u'\n'), u"spoken:"_s,
                                 speech.spoken().join(u'\n')};
        QVERIFY2(heard() == expected, qPrintable(report.join(u'\n')));
    }
    lost = false;
}

QTEST_GUILESS_MAIN(OrcaTour)
#include "OrcaTour.moc"
