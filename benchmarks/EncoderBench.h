#pragma once

namespace quilmora::bench {

/// Encoding photos and covers as PNG against Qt: time, size, and the time until they are uploaded.
void benchEncoder();

} // namespace quilmora::bench
