#pragma once

namespace quilmora {

class HistoryGrid;

/// A history grid to screen readers: a list of tiles, each with its prompt as name, that can be focused and
/// pressed.
namespace historyGridAccessible {

/// Makes Qt use it for every history grid. May be called repeatedly.
void install();

/// Reports that the tile at `position` has got the focus.
void notifyFocus(HistoryGrid &grid, int position);

} // namespace historyGridAccessible
} // namespace quilmora
