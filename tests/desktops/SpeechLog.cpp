#include "SpeechLog.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quilmora::test {

SpeechLog::SpeechLog() : m_log{qEnvironmentVariable("QUILMORA_ORCA_LOG")}
{
    if (!m_log.open(QIODevice::ReadOnly)) {
        qFatal("No log of Orca: %s", qUtf8Printable(m_log.errorString()));
    }
}

QStringList SpeechLog::spoken()
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

void SpeechLog::forget()
{
    m_log.seek(m_log.size());
}

void SpeechLog::waitUntilQuiet()
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

} // namespace quilmora::test
