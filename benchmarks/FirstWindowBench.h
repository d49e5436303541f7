#pragma once

namespace quilmora::bench {

/// Time until the application's window is on the screen and the memory it has then, against a bare window of
/// the same toolkit and an empty one of a browser; and what a start writes to the disk. Needs an X display.
void benchFirstWindow();

} // namespace quilmora::bench
