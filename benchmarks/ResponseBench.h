#pragma once

namespace quilmora::bench {

/// What the main thread does for an answer of 30 MB beside painting and writing the cover's file.
void benchAnswer();

} // namespace quilmora::bench
