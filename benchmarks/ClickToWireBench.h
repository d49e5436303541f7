#pragma once

namespace quilmora::bench {

/// From the click on the button to the first byte of the request, with a photo and a sample cover.
void benchClickToWire();

} // namespace quilmora::bench
