#include "ProgramOnDesktop.h"
#include "platform/Files.h"
#include "reliability/ServiceProcess.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <utility>

using namespace quilmora;
using namespace quilmora::test;

namespace {

/// What the screen reader Orca speaks, read from the log that scripts/desktops/orca.sh makes it write.
class SpeechLog final
{
public:
    /// Of the Orca on this desktop; the test program ends when there is none.
    SpeechLog() : m_log{qEnvironmentVariable("QUILMORA_ORCA_LOG")}
    {
        if (!m_log.open(QIODevice::ReadOnly)) {
            qFatal("No log of Orca: %s", qUtf8Printable(m_log.errorString()));
        }
    }

    /// Everything that was spoken since the last call of forget(), utterance by utterance.
    QStringList spoken()
    {
        const qint64 start = m_log.pos();
        const QString text = QString::fromUtf8(m_log.readAll());
        m_log.seek(start);
        // The voice comes after the text, which may have several lines.
        static const QRegularExpression utterance{u"SPEECH OUTPUT: '(.*?)'(?: voice=\\w+)? ?\\{"_s,
                                                  QRegularExpression::DotMatchesEverythingOption};
        QStringList utterances;
        for (const QRegularExpressionMatch &match : utterance.globalMatch(text)) {
            utterances.append(match.captured(1));
        }
        return utterances;
    }
    void forget() { m_log.seek(m_log.size()); }

    /// Waits until Orca has nothing to do: it logs every event that it handles.
    void waitUntilQuiet()
    {
        constexpr int quietTime = 400;
        qint64 size = -1;
        QElapsedTimer unchanged;
        const auto isQuiet = [&] {
            if (m_log.size() != size) {
                size = m_log.size();
                unchanged.start();
            }
            return unchanged.hasExpired(quietTime);
        };
        QVERIFY(QTest::qWaitFor(isQuiet, 60'000));
    }

private:
    QFile m_log;
};

/// What a user does, step by step, and the texts of the program that are to be heard then.
class Transcript final
{
public:
    struct Step {
        QString action;
        QStringList heard;
    };
    struct Chapter {
        QString name;
        QList<Step> steps;
    };

    /// Reads a file in the format that OrcaDesktopTest.txt describes; the test program ends when that fails.
    explicit Transcript(const QString &path)
    {
        QFile file{path};
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("Cannot read %s", qUtf8Printable(path));
        }
        const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        for (const QString &line : lines) {
            if (line.startsWith(u"== "_s)) {
                m_read.append({line.sliced(3), {}});
            } else if (line.startsWith(u"> "_s)) {
                m_read.last().steps.append({line.sliced(2), {}});
            } else if (!line.startsWith(u'#')) {
                m_read.last().steps.last().heard.append(line);
                m_known.append(line);
            }
        }
        m_known.removeDuplicates();
        std::sort(m_known.begin(), m_known.end(),
                  [](const QString &one, const QString &other) { return one.size() > other.size(); });
    }

    const QList<Chapter> &chapters() const { return m_read; }

    /// The texts of this transcript that are in `speech`, in its order. Everything else in it is passed over.
    QStringList textsIn(const QString &speech) const
    {
        QStringList texts;
        qsizetype position = 0;
        while (position < speech.size()) {
            const auto rest = QStringView{speech}.sliced(position);
            const auto text = std::find_if(m_known.begin(), m_known.end(), [rest](const QString &candidate) {
                return rest.startsWith(candidate);
            });
            if (text != m_known.end()) {
                texts.append(*text);
            }
            position += text != m_known.end() ? text->size() : 1;
        }
        return texts;
    }

private:
    QList<Chapter> m_read;
    QStringList m_known; ///< All texts, the longest first.
};

} // namespace

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
        DatabaseManager{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()}.saveConfig(
            m_service.endpoint(), {}, u"doubao-seedream-4-0-250828"_s);
        m_speech.waitUntilQuiet();
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
    // Slow enough for the progress to be spoken.
    const ServiceProcess m_service{{u"--key"_s, u"k"_s, u"--delay"_s, u"1500"_s}};
    std::optional<ProgramOnDesktop> m_program;
    bool m_lost = false; ///< Somewhere else in the program than the transcript says.
};

QUILMORA_TEST(OrcaDesktopTest, runCoreTest)
#include "OrcaDesktopTest.moc"
