#include "reliability/KillSchedule.h"

#include "reliability/StoreWorkerProcess.h"

#include <QDateTime>
#include <QFileInfo>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::test {
namespace {

/// What saving settings, a cover's file with its row, and the adoption of many covers take, and a little
/// more.
constexpr std::chrono::microseconds savingSpan = 3ms;
constexpr std::chrono::microseconds fileSpan = 6ms;
constexpr std::chrono::microseconds adoptionSpan = 15ms;

std::chrono::microseconds upTo(std::chrono::microseconds span, QRandomGenerator &random)
{
    return std::chrono::microseconds{random.bounded(static_cast<int>(span.count()))};
}

/// Sooner rather than later: most of it happens at the beginning.
std::chrono::microseconds soonWithin(std::chrono::microseconds span, QRandomGenerator &random)
{
    const double part = random.generateDouble();
    return std::chrono::microseconds{
        static_cast<int>(part * part * part * part * static_cast<double>(span.count()))};
}

/// Looks until it is so, without a pause that would miss the beginning, for as long as the maker runs.
template <typename Condition>
bool watch(StoreWorkerProcess &maker, Condition isSo)
{
    for (int looks = 0; looks < 100'000'000; ++looks) {
        if (isSo()) {
            return true;
        }
        if (looks % 10'000 == 0 && !maker.isRunning()) {
            return isSo();
        }
        std::this_thread::yield();
    }
    return false;
}

} // namespace

KillSchedule::KillSchedule(Kind kind, QRandomGenerator &random, const Pace &pace)
    : m_kind{kind},
      m_turn{random.bounded(1, 3)}
{
    switch (m_kind) {
    case Kind::start:
        m_delay = upTo(pace.start * 5 / 4, random);
        break;
    case Kind::adoption:
        m_delay = upTo(adoptionSpan, random);
        break;
    case Kind::settings:
        m_delay = soonWithin(savingSpan, random);
        break;
    case Kind::file:
        m_delay = soonWithin(fileSpan, random);
        break;
    case Kind::anywhere:
        m_delay = upTo(pace.cover * 5 / 2, random);
        break;
    }
}

bool KillSchedule::waitIn(StoreWorkerProcess &maker, const QString &databaseFolder,
                          const QString &coversFolder) const
{
    bool hasCome = true;
    if (m_kind == Kind::adoption) {
        // The log beside the database is there from the first of many adoptions to the last.
        hasCome = watch(maker, [&] {
            return QFileInfo::exists(databaseFolder + u"/quilmora.db-wal"_s) || maker.hasSaid("started");
        });
    } else if (m_kind == Kind::settings) {
        hasCome = maker.waitFor("saving " + QByteArray::number(m_turn));
    } else if (m_kind == Kind::file) {
        // Looked at by its time: to list it would take longer than what is to be interrupted.
        const auto changed = [&coversFolder] {
            return QFileInfo{coversFolder}.lastModified();
        };
        hasCome = maker.waitFor("saving " + QByteArray::number(m_turn));
        const QDateTime before = changed();
        hasCome = hasCome && watch(maker, [&] { return changed() != before; });
    } else if (m_kind == Kind::anywhere) {
        hasCome = maker.waitFor("started");
    }
    std::this_thread::sleep_for(m_delay);
    return hasCome;
}

} // namespace quilmora::test
