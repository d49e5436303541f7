#pragma once

namespace quilmora::bench {

/// How often the main thread wakes up in each state of each screen while nobody touches it. Qt's
/// blinking cursor is switched off.
void benchStates();

} // namespace quilmora::bench
