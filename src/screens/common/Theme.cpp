#include "screens/common/Theme.h"

#include "platform/SystemAppearance.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace quilmora
{
namespace
{

QColor black(double opacity)
{
    return QColor::fromRgbF(0.0F, 0.0F, 0.0F, static_cast<float>(opacity));
}

QColor white(double opacity)
{
    return QColor::fromRgbF(1.0F, 1.0F, 1.0F, static_cast<float>(opacity));
}

QColor rgb(double red, double green, double blue, double opacity = 1.0)
{
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue),
                            static_cast<float>(opacity));
}

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QColor schemeColor(ColorRole role, bool dark)
{
    switch (role) {
    case ColorRole::windowBackground:
        return QColor{dark ? 0x323232U : 0xECECECU};
    case ColorRole::buttonBackground:
        return QColor{dark ? 0x5A5A5AU : 0xFFFFFFU};
    case ColorRole::controlBackground:
    case ColorRole::textBackground:
        return QColor{dark ? 0x1E1E1EU : 0xFFFFFFU};
    case ColorRole::menuBackground:
        return QColor{dark ? 0x3A3A3AU : 0xF6F6F6U};
    case ColorRole::accent:
        return QColor{dark ? 0x0A84FFU : 0x007AFFU};
    case ColorRole::primaryText:
        return dark ? white(0.85) : black(0.85);
    case ColorRole::secondaryText:
        return dark ? white(0.55) : black(0.58);
    case ColorRole::tertiaryText:
        return dark ? white(0.25) : black(0.26);
    case ColorRole::separator:
        return dark ? white(0.10) : black(0.10);
    case ColorRole::red:
        return QColor{dark ? 0xFF453AU : 0xFF3B30U};
    case ColorRole::green:
        return QColor{dark ? 0x32D74BU : 0x28CD41U};
    case ColorRole::redText:
        return QColor{dark ? 0xFF6961U : 0xD70015U};
    case ColorRole::greenText:
        return QColor{dark ? 0x30DB5BU : 0x007D1BU};
    case ColorRole::controlBorder:
        return dark ? white(0.16) : black(0.15);
    case ColorRole::scrim:
        return black(dark ? 0.40 : 0.20);
    case ColorRole::controlPressed:
        return dark ? white(0.12) : black(0.08);
    default:
        return QColor{dark ? 0x98989DU : 0x8E8E93U};
    }
}

} // namespace

Theme &Theme::current()
{
    static Theme theme;
    return theme;
}

Theme::Theme() : system{new SystemAppearance{qApp}}
{
    connect(system, &SystemAppearance::changed, this, &Theme::followSystem);
    followSystem();
}

void Theme::followSystem()
{
#ifndef Q_OS_MACOS
    // Takes back what setScheme() gave, so that the system's own shows.
    QApplication::setPalette(QPalette{});
#endif
    const QColor window = QApplication::palette().color(QPalette::Window);
    const ColorScheme ofPalette = window.lightness() < 128 ? ColorScheme::dark : ColorScheme::light;
    colorScheme = system->scheme().value_or(ofPalette);
    colorContrast = system->contrast();
    showColors();
}

QColor Theme::color(ColorRole role) const
{
    if (const QColor strong = highContrastColor(role); colorContrast == Contrast::high && strong.isValid()) {
        return strong;
    }
    const bool dark = colorScheme == ColorScheme::dark;
    switch (role) {
    case ColorRole::onAccent:
    case ColorRole::onBackdrop:
    case ColorRole::toastText:
        return white(1.0);
    case ColorRole::onBackdropSecondary:
        return white(0.7);
    case ColorRole::previewBackdrop:
        return black(0.92);
    case ColorRole::previewPictureShadow:
        return black(0.6);
    case ColorRole::hoverFill:
        return withOpacity(schemeColor(ColorRole::grey, dark), 0.15);
    case ColorRole::tileBorder:
        return withOpacity(schemeColor(ColorRole::grey, dark), 0.20);
    case ColorRole::optionBorder:
        return withOpacity(schemeColor(ColorRole::grey, dark), 0.25);
    case ColorRole::selectedFill:
        return rgb(1.0, 0.78, 0.2);
    case ColorRole::selectedBorder:
        return rgb(0.95, 0.7, 0.1);
    case ColorRole::selectedPrimaryText:
        return rgb(0.2, 0.2, 0.1);
    case ColorRole::selectedSecondaryText:
        return rgb(0.3, 0.25, 0.05);
    case ColorRole::selectedChipText:
        return rgb(0.1, 0.1, 0.1);
    case ColorRole::step:
        return rgb(0.18, 0.72, 0.45);
    case ColorRole::sheetShadow:
        return black(0.35);
    case ColorRole::pictureShadow:
        return black(0.1);
    case ColorRole::gradientButtonShadow:
        return rgb(0.45, 0.35, 0.95, 0.25);
    case ColorRole::toastBackground:
        return black(0.78);
    default:
        return schemeColor(role, dark);
    }
}

QColor Theme::highContrastColor(ColorRole role) const
{
    const bool dark = colorScheme == ColorScheme::dark;
    switch (role) {
    case ColorRole::primaryText:
        return dark ? white(1.0) : black(1.0);
    case ColorRole::secondaryText:
        return dark ? white(0.85) : black(0.80);
    case ColorRole::tertiaryText:
        return dark ? white(0.70) : black(0.65);
    case ColorRole::separator:
    case ColorRole::controlBorder:
    case ColorRole::tileBorder:
    case ColorRole::optionBorder:
        return dark ? white(0.60) : black(0.60);
    case ColorRole::selectedBorder:
        // On the dark scheme it stands out as it is.
        return dark ? QColor{} : black(0.60);
    case ColorRole::grey:
        return QColor{dark ? 0xAEAEB2U : 0x636366U};
    case ColorRole::red:
        return QColor{dark ? 0xFF6961U : 0xD70015U};
    case ColorRole::green:
        return QColor{dark ? 0x30DB5BU : 0x1E7A34U};
    case ColorRole::step:
        return rgb(0.05, 0.45, 0.27);
    default:
        return {};
    }
}

double Theme::borderWidth(double width) const
{
    return colorContrast == Contrast::high ? 2 * width : width;
}

void Theme::setScheme(ColorScheme scheme)
{
    colorScheme = scheme;
    showColors();
}

void Theme::setContrast(Contrast contrast)
{
    colorContrast = contrast;
    showColors();
}

void Theme::showColors()
{
#ifndef Q_OS_MACOS
    QApplication::setPalette(palette());
#endif
    // Some colours are no part of the palette, which may not have changed.
    for (QWidget *widget : QApplication::allWidgets()) {
        QEvent change{QEvent::ApplicationPaletteChange};
        QCoreApplication::sendEvent(widget, &change);
        widget->update();
    }
}

QPalette Theme::palette() const
{
    const QColor window = color(ColorRole::windowBackground);
    const QColor control = color(ColorRole::controlBackground);
    const QColor text = color(ColorRole::primaryText);
    const QColor faint = color(ColorRole::tertiaryText);
    QPalette palette{control, window};
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, color(ColorRole::textBackground));
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Button, control);
    palette.setColor(QPalette::ToolTipBase, control);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, color(ColorRole::accent));
    palette.setColor(QPalette::HighlightedText, color(ColorRole::onAccent));
    palette.setColor(QPalette::Link, color(ColorRole::accent));
    return palette;
}

QLinearGradient Theme::accentGradient(const QRectF &bounds)
{
    QLinearGradient gradient{bounds.topLeft(), bounds.topRight()};
    gradient.setColorAt(0.0, rgb(0.1, 0.8, 0.85));
    gradient.setColorAt(0.5, rgb(0.45, 0.35, 0.95));
    gradient.setColorAt(1.0, rgb(0.95, 0.3, 0.75));
    return gradient;
}

QColor themeColor(ColorRole role)
{
    return Theme::current().color(role);
}

} // namespace quilmora
