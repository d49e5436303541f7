#pragma once

class QLayout;

namespace quilmora
{

/// Lets screen readers go through the widgets of a layout in its order instead of that of their making. To be
/// called when the layout is complete; the order of the Tab key stays.
void readInLayoutOrder(const QLayout &layout);

} // namespace quilmora
