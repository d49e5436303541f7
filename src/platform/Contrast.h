#pragma once

namespace quilmora {

/// How far texts and borders stand out from what is behind them.
enum class Contrast { normal, high };

} // namespace quilmora
