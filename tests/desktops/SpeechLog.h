#pragma once

#include <QFile>
#include <QStringList>

namespace quilmora::test {

/// What the screen reader Orca speaks, read from the log that scripts/desktops/orca.sh makes it write.
class SpeechLog final
{
public:
    /// Of the Orca on this desktop; the test program ends when there is none.
    SpeechLog();
    Q_DISABLE_COPY_MOVE(SpeechLog)
    ~SpeechLog() = default;

    /// Everything that was spoken since the last call of forget(), utterance by utterance.
    QStringList spoken();
    void forget();

    /// Waits until Orca has nothing to do: it logs every event that it handles.
    void waitUntilQuiet();

private:
    QFile m_log;
};

} // namespace quilmora::test
