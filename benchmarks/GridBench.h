#pragma once

namespace quilmora::bench {

/// How long the history grid holds the main loop while its tiles fill and while the user scrolls, what
/// filling costs beside reading the rows of the same files, and what a second visit costs.
void benchGrid();

} // namespace quilmora::bench
