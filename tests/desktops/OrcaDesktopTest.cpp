#include "DesktopInput.h"
#include "ProgramOnDesktop.h"
#include "SpeechLog.h"
#include "Transcript.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QProcess>
#include <QTest>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// What the screen reader Orca speaks while the program is used by keyboard, against OrcaDesktopTest.txt.
class OrcaDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        samplePictures::write(m_home.path(u"photo.png"_s),
                              samplePictures::png(samplePictures::picture({64, 64})));
        samplePictures::write(m_home.path(u"large.png"_s), QByteArray(qsizetype{12} * 1024 * 1024, 'x'));
        m_service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // Slow enough for the progress to be spoken.
        m_service.start(QStringLiteral(QUILMORA_LOCAL_SERVICE_PROGRAM),
                        {u"--key"_s, u"k"_s, u"--delay"_s, u"1500"_s});
        while (!m_service.canReadLine()) {
            QVERIFY(m_service.waitForReadyRead());
        }
        const QString endpoint = QString::fromUtf8(m_service.readLine()).trimmed().section(u' ', -1);
        DatabaseManager{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()}.saveConfig(
            endpoint, {}, u"doubao-seedream-4-0-250828"_s);
        m_speech.waitUntilQuiet();
    }

    void cleanupTestCase()
    {
        m_program.reset();
        m_service.terminate();
        QVERIFY(m_service.waitForFinished());
    }

    void itIsSpoken_data()
    {
        QTest::addColumn<QList<Transcript::Step>>("steps");
        for (const Transcript::Chapter &chapter : m_transcript.chapters()) {
            QTest::newRow(qUtf8Printable(chapter.name)) << chapter.steps;
        }
    }

    void itIsSpoken()
    {
        QFETCH(const QList<Transcript::Step>, steps);
        QVERIFY2(!std::exchange(m_lost, true), "an earlier chapter has failed");
        for (const Transcript::Step &step : steps) {
            m_speech.forget();
            act(step.action);
            if (QTest::currentTestFailed()) {
                return;
            }
            QStringList expected = step.heard;
            expected.sort();
            const auto heard = [this] {
                QStringList texts = m_transcript.textsIn(m_speech.spoken().join(u'\n'));
                texts.sort();
                return texts;
            };
            (void)QTest::qWaitFor([&] { return heard().size() >= expected.size(); }, 15'000);
            // Nothing may come after it.
            m_speech.waitUntilQuiet();
            const QStringList report{u"> "_s + step.action, u"expected:"_s, step.heard.join(u'\n'),
                                     u"spoken:"_s, m_speech.spoken().join(u'\n')};
            QVERIFY2(heard() == expected, qPrintable(report.join(u'\n')));
        }
        m_lost = false;
    }

private:
    void act(const QString &action)
    {
        const QString verb = action.section(u' ', 0, 0);
        const QString object = action.section(u' ', 1);
        if (verb == u"open"_s) {
            m_program.emplace();
        } else if (verb == u"choose"_s) {
            QTRY_VERIFY_WITH_TIMEOUT(m_program->desktop().setText(u"文件名称(N)："_s, m_home.path(object)),
                                     desktopLimit);
            desktopInput::press(u"Return"_s);
        } else if (verb == u"press"_s) {
            desktopInput::press(object);
        } else {
            QCOMPARE(verb, u"type"_s);
            desktopInput::type(object);
        }
    }

    const TemporaryHome m_home;
    const Transcript m_transcript{QStringLiteral(TRANSCRIPT)};
    SpeechLog m_speech;
    QProcess m_service;
    std::optional<ProgramOnDesktop> m_program;
    bool m_lost = false; ///< Somewhere else in the program than the transcript says.
};

QUILMORA_TEST(OrcaDesktopTest, runCoreTest)
#include "OrcaDesktopTest.moc"
