#pragma once

#include "platform/SystemAppearance.h"

#include <QColor>
#include <QLinearGradient>
#include <QObject>
#include <QPalette>

namespace quilmora {

/// The purpose of a color.
enum class ColorRole {
    windowBackground,
    controlBackground,
    buttonBackground, ///< Of bordered buttons, which look raised.
    textBackground,
    menuBackground,
    accent,
    primaryText,
    secondaryText,
    tertiaryText,
    separator,
    grey,
    red,
    green,
    redText, ///< Texts need more contrast than fills and symbols.
    greenText,
    controlBorder,  ///< Hairline around fields and buttons.
    controlPressed, ///< Overlay of a pressed button.
    onAccent,       ///< Text and symbols on the accent color and gradient.
    hoverFill,
    tileBorder,
    optionBorder, ///< Of options that are not selected, and of every expression chip.
    selectedFill,
    selectedBorder,
    selectedPrimaryText,
    selectedSecondaryText,
    selectedChipText,
    step, ///< Disc of a step number.
    pictureShadow,
    gradientButtonShadow,
    previewBackdrop, ///< Over the window background, behind a large cover.
    onBackdrop,      ///< Text on that.
    onBackdropSecondary,
    previewPictureShadow,
    scrim, ///< Over a window, below its sheet.
    sheetShadow,
    toastBackground,
    toastText,
    count, ///< How many roles there are.
};

/// The colors of the application. Follows the scheme and the contrast of the system.
class Theme final : public QObject
{
    Q_OBJECT

public:
    /// Needs a QGuiApplication. Main thread only.
    static Theme &current();

    QColor color(ColorRole role) const;
    ColorScheme scheme() const { return m_scheme; }

    /// Replaces that of the system, sets the application's palette and repaints every window.
    void setScheme(ColorScheme scheme);
    void setContrast(Contrast contrast);

    /// `width` at normal contrast, twice that at high contrast.
    double borderWidth(double width) const;

    /// Takes over scheme and contrast of the system. To be called on QEvent::ThemeChange; other changes are
    /// noticed.
    void followSystem();

    /// The gradient from the left to the right edge of `bounds`.
    static QLinearGradient accentGradient(const QRectF &bounds);

private:
    Theme();
    void applyColors();
    QPalette palette() const;

    const SystemAppearance *m_system; ///< Owned by the application object.
    ColorScheme m_scheme = ColorScheme::light;
    Contrast m_contrast = Contrast::normal;
};

/// The current theme's color.
QColor themeColor(ColorRole role);

} // namespace quilmora
