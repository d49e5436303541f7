#pragma once

namespace quilmora::bench {

/// Time from the click on each tab to its painted screen, with an empty history.
void benchTabs();

} // namespace quilmora::bench
