#pragma once

namespace quilmora {

/// The light or the dark look of a desktop.
enum class ColorScheme { light, dark };

} // namespace quilmora
