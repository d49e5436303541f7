#pragma once

#include "platform/ColorScheme.h"
#include "platform/Contrast.h"

#include <QColor>
#include <QLinearGradient>
#include <QObject>
#include <QPalette>

namespace quilmora
{

class SystemAppearance;

/// What a colour is for. Those of the system's own kind differ between the light and the dark scheme, the
/// product's own are the same in both.
enum class ColorRole {
    windowBackground,
    controlBackground,
    buttonBackground, ///< Of bordered buttons: raised from the window, not sunken like a field.
    textBackground,
    menuBackground, ///< Of menus, which lie above everything else.
    accent,
    primaryText,
    secondaryText,
    tertiaryText,
    separator,
    grey,
    red,
    green,
    redText, ///< Of texts, which need more contrast than fills and symbols.
    greenText,
    controlBorder,  ///< Hairline around fields and buttons.
    controlPressed, ///< Laid over a button that is held down.
    onAccent,       ///< Text and symbols on the accent colour and on the accent gradient.
    hoverFill,
    tileBorder,
    optionBorder, ///< Around options that are not selected, and around every expression chip.
    selectedFill,
    selectedBorder,
    selectedPrimaryText,
    selectedSecondaryText,
    selectedChipText,
    step, ///< Disc of a step number.
    pictureShadow,
    gradientButtonShadow,
    previewBackdrop, ///< Laid over the window background behind a cover that is shown large.
    onBackdrop,      ///< Text on that.
    onBackdropSecondary,
    previewPictureShadow,
    scrim, ///< Laid over a window below its sheet.
    sheetShadow,
    toastBackground,
    toastText,
};

/// The colours of the application, light or dark and of high contrast as the system has it at the start and
/// whenever it changes.
class Theme final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Theme)

public:
    /// The application's theme; needs a QGuiApplication. Main thread only.
    static Theme &current();
    ~Theme() override = default;

    QColor color(ColorRole role) const;
    ColorScheme scheme() const { return colorScheme; }

    /// Takes over a scheme and gives the application its palette; every window is drawn anew.
    void setScheme(ColorScheme scheme);
    /// The same for the contrast.
    void setContrast(Contrast contrast);

    /// The width of the border of a control that is `width` wide at normal contrast.
    double borderWidth(double width) const;

    /// Takes over scheme and contrast of the system. Done by itself when the system states others; to be
    /// called when a window is told that its palette has changed.
    void followSystem();

    /// The gradient of the product from the left to the right edge of `bounds`.
    static QLinearGradient accentGradient(const QRectF &bounds);

private:
    Theme();
    QColor highContrastColor(ColorRole role) const;
    void showColors();
    QPalette palette() const;

    const SystemAppearance *system; ///< Owned by the application object, which it must not outlive.
    ColorScheme colorScheme = ColorScheme::light;
    Contrast colorContrast = Contrast::normal;
};

/// Short for the current theme's colour.
QColor themeColor(ColorRole role);

} // namespace quilmora
