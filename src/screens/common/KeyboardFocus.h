#pragma once

#include <Qt>

namespace quilmora
{

/// Whether a focus that came for that reason came by keyboard and is to be marked: by a key that moves the
/// focus, or from the program while the user was last seen at the keyboard. Whoever works by mouse sees no
/// mark on what was clicked. Back from a menu it is as before, which `wasMarked` tells. To be called once
/// early, with any reason, so that the user has been watched since.
bool isKeyboardFocus(Qt::FocusReason reason, bool wasMarked);

} // namespace quilmora
