#pragma once

#include <chrono>

namespace quilmora {

/// Ends the process at once, with `exitStatus`, if it has not ended by itself within `time`. To be called
/// when everything is saved: libraries wait for calls that they cannot interrupt, such as the lookup of a
/// host name.
void startExitWatchdog(std::chrono::seconds time, int exitStatus);

} // namespace quilmora
