#pragma once

#include <QRandomGenerator>
#include <QString>

#include <chrono>

namespace quilmora::test {

class StoreWorkerProcess;

/// A moment at which a maker is killed: by chance, but near to what it is to interrupt, or most kills would
/// hit the time in which it waits for the service.
class KillSchedule final
{
public:
    enum class Kind {
        start,    ///< While the program starts.
        adoption, ///< While it adds rows for covers that have none.
        settings, ///< While it saves settings.
        file,     ///< While it writes a cover and its row.
        anywhere  ///< At any time after the start.
    };
    static constexpr int kinds = 5;

    /// How long things take here.
    struct Pace {
        std::chrono::microseconds start;
        std::chrono::microseconds cover;
    };

    KillSchedule(Kind kind, QRandomGenerator &random, const Pace &pace);

    /// Waits until it has come. False when the maker ended before, or said nothing for long.
    bool waitIn(StoreWorkerProcess &maker, const QString &databaseFolder, const QString &coversFolder) const;

private:
    const Kind m_kind;
    int m_turn;                        ///< At which of its settings or covers.
    std::chrono::microseconds m_delay; ///< After that.
};

} // namespace quilmora::test
