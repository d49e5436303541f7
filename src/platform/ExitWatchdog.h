#pragma once

#include <chrono>

namespace quilmora {

/// Gives the process that long to end by itself, after which it is ended at once, with that exit status. For
/// the time when all that is to be kept is kept: libraries wait at the end for what they cannot interrupt,
/// for instance half a minute for a name that nobody knows.
void startExitWatchdog(std::chrono::seconds time, int exitStatus);

} // namespace quilmora
