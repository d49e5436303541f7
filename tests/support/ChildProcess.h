#pragma once

#include <QByteArray>
#include <QString>
#include <QTest>

#include <functional>

/// Running a piece of a test in a copy of the process, where it may crash, hang, or give up rights.
namespace quilmora::test::childProcess {

/// How the copy ended.
struct Outcome {
    int exitCode = -1; ///< 0 when the action came to its end; -1 when a signal ended the copy.
    int signal = 0;    ///< The signal that ended it; SIGALRM for one that hung for ten seconds.
    QByteArray standardOutput;

    bool operator==(const Outcome &other) const = default;

    /// For the messages of QCOMPARE.
    friend char *toString(const Outcome &outcome)
    {
        return QTest::toString(QStringLiteral("exit code %1, signal %2: %3")
                                   .arg(outcome.exitCode)
                                   .arg(outcome.signal)
                                   .arg(QString::fromUtf8(outcome.standardOutput)));
    }
};

/// That of an action that came to its end and printed that.
inline Outcome succeeded(const QByteArray &output = {}) { return {0, 0, output}; }

/// Runs `action` in a forked copy of the process and waits for its end. Nothing that it changes in memory is
/// seen by the caller. No core file is left behind.
Outcome run(const std::function<void()> &action);

/// For use in the copy: gives up the administrator's rights, if the process has them.
void becomeOrdinaryUser();

/// For use in the copy: no file may grow beyond that many bytes; a write takes what fits and then fails.
void limitFileSize(qint64 bytes);

/// For use in the copy: makes `folder` an empty disk of that size, seen by the copy alone. False where that
/// is not allowed (it takes the administrator's rights, and Linux).
bool mountSmallDisk(const QString &folder, qint64 bytes);

} // namespace quilmora::test::childProcess
