#pragma once

class QPainter;
class QRect;

namespace quilmora {

/// The background, the border and the focus ring of a push button.
struct ButtonFace {
    enum class Kind {
        bordered,
        prominent, ///< Filled with the accent color.
        gradient,  ///< Filled with the accent gradient.
        plain,     ///< Without a background.
    };

    Kind kind;
    double cornerRadius; ///< Cut to half the height.
    bool isPressed = false;
    bool isHovered = false;
    bool isFocused = false;

    void draw(QPainter &painter, const QRect &bounds) const;
};

} // namespace quilmora
