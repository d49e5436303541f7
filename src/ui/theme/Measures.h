#pragma once

/// Lengths that several widgets share, in device-independent pixels.
namespace quilmora::measures {

constexpr double controlRadius = 6; ///< Of buttons, fields and menus.
constexpr double cardRadius = 10;   ///< Of cards, wide buttons and large pictures.
constexpr double sheetRadius = 12;  ///< Of sheets and of groups of settings.

constexpr int iconSpacing = 6;    ///< Between a symbol and its title.
constexpr int buttonSpacing = 14; ///< Between two buttons in a row.
constexpr int pagePadding = 32;   ///< Beside and below the content of a screen.
constexpr int headerPadding = 24; ///< Above the title of a screen.

} // namespace quilmora::measures
