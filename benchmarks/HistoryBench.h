#pragma once

namespace quilmora::bench {

/// Opening the history screen with 10,000 covers against 10, in time and in memory, and opening a preview
/// against decoding its picture.
void benchHistory();

} // namespace quilmora::bench
