#pragma once

#include <QByteArray>
#include <QTest>

#include <utility>

namespace quilmora::test {

/// In a loop of checks, names the round in which one fails.
class FailureNote final
{
public:
    explicit FailureNote(QByteArray round) : m_round{std::move(round)} {}
    Q_DISABLE_COPY_MOVE(FailureNote)
    ~FailureNote()
    {
        if (QTest::currentTestFailed()) {
            qInfo("It failed at: %s", m_round.constData());
        }
    }

private:
    const QByteArray m_round;
};

} // namespace quilmora::test
