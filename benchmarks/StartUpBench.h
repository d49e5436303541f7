#pragma once

namespace quilmora::bench {

/// Opening the store with 10,000 covers that all have rows, and with 10,000 that have none.
void benchStartUp();

} // namespace quilmora::bench
