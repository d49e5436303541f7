#include "ui/theme/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <array>

namespace quilmora {
namespace {

/// Components from 0 to 1.
struct Tone {
    double red;
    double green;
    double blue;
    double opacity = 1;

    operator QColor() const // NOLINT(google-explicit-constructor)
    {
        return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue),
                                static_cast<float>(opacity));
    }
};

constexpr Tone black(double opacity) { return {0, 0, 0, opacity}; }

constexpr Tone white(double opacity) { return {1, 1, 1, opacity}; }

constexpr Tone hex(unsigned rgb, double opacity = 1)
{
    return {(rgb >> 16U) / 255.0, (rgb >> 8U & 0xFFU) / 255.0, (rgb & 0xFFU) / 255.0, opacity};
}

/// The colors of one role.
struct RoleColors {
    ColorRole role;
    Tone light;
    Tone dark;
    Tone lightHighContrast = light;
    Tone darkHighContrast = dark;
};

constexpr RoleColors fixed(ColorRole role, Tone tone) { return {role, tone, tone}; }

constexpr RoleColors outline(ColorRole role, Tone light, Tone dark)
{
    return {role, light, dark, black(0.60), white(0.60)};
}

/// One line for each role, in the order of the enumeration.
constexpr std::array roleColors{
    RoleColors{ColorRole::windowBackground, hex(0xECECEC), hex(0x323232)},
    RoleColors{ColorRole::controlBackground, hex(0xFFFFFF), hex(0x1E1E1E)},
    RoleColors{ColorRole::buttonBackground, hex(0xFFFFFF), hex(0x5A5A5A)},
    RoleColors{ColorRole::textBackground, hex(0xFFFFFF), hex(0x1E1E1E)},
    RoleColors{ColorRole::menuBackground, hex(0xF6F6F6), hex(0x3A3A3A)},
    RoleColors{ColorRole::accent, hex(0x007AFF), hex(0x0A84FF)},
    RoleColors{ColorRole::primaryText, black(0.85), white(0.85), black(1.0), white(1.0)},
    RoleColors{ColorRole::secondaryText, black(0.58), white(0.55), black(0.80), white(0.85)},
    RoleColors{ColorRole::tertiaryText, black(0.26), white(0.25), black(0.65), white(0.70)},
    outline(ColorRole::separator, black(0.10), white(0.10)),
    RoleColors{ColorRole::grey, hex(0x8E8E93), hex(0x98989D), hex(0x636366), hex(0xAEAEB2)},
    RoleColors{ColorRole::red, hex(0xFF3B30), hex(0xFF453A), hex(0xD70015), hex(0xFF6961)},
    RoleColors{ColorRole::green, hex(0x28CD41), hex(0x32D74B), hex(0x1E7A34), hex(0x30DB5B)},
    RoleColors{ColorRole::redText, hex(0xD70015), hex(0xFF6961)},
    RoleColors{ColorRole::greenText, hex(0x007D1B), hex(0x30DB5B)},
    outline(ColorRole::controlBorder, black(0.15), white(0.16)),
    RoleColors{ColorRole::controlPressed, black(0.08), white(0.12)},
    fixed(ColorRole::onAccent, white(1.0)),
    RoleColors{ColorRole::hoverFill, hex(0x8E8E93, 0.15), hex(0x98989D, 0.15)},
    outline(ColorRole::tileBorder, hex(0x8E8E93, 0.20), hex(0x98989D, 0.20)),
    outline(ColorRole::optionBorder, hex(0x8E8E93, 0.25), hex(0x98989D, 0.25)),
    fixed(ColorRole::selectedFill, {1.0, 0.78, 0.2}),
    RoleColors{ColorRole::selectedBorder, {0.95, 0.7, 0.1}, {0.95, 0.7, 0.1}, black(0.60)},
    fixed(ColorRole::selectedPrimaryText, {0.2, 0.2, 0.1}),
    fixed(ColorRole::selectedSecondaryText, {0.3, 0.25, 0.05}),
    fixed(ColorRole::selectedChipText, {0.1, 0.1, 0.1}),
    RoleColors{
        ColorRole::step, {0.18, 0.72, 0.45}, {0.18, 0.72, 0.45}, {0.05, 0.45, 0.27}, {0.05, 0.45, 0.27}},
    fixed(ColorRole::pictureShadow, black(0.1)),
    fixed(ColorRole::gradientButtonShadow, {0.45, 0.35, 0.95, 0.25}),
    fixed(ColorRole::previewBackdrop, black(0.92)),
    fixed(ColorRole::onBackdrop, white(1.0)),
    fixed(ColorRole::onBackdropSecondary, white(0.7)),
    fixed(ColorRole::previewPictureShadow, black(0.6)),
    RoleColors{ColorRole::scrim, black(0.20), black(0.40)},
    fixed(ColorRole::sheetShadow, black(0.35)),
    fixed(ColorRole::toastBackground, black(0.78)),
    fixed(ColorRole::toastText, white(1.0)),
};

constexpr bool coversEveryRole()
{
    for (std::size_t i = 0; i < roleColors.size(); ++i) {
        if (roleColors[i].role != static_cast<ColorRole>(i)) {
            return false;
        }
    }
    return roleColors.size() == static_cast<std::size_t>(ColorRole::count);
}
static_assert(coversEveryRole());

} // namespace

Theme &Theme::current()
{
    static Theme theme;
    return theme;
}

Theme::Theme() : m_system{new SystemAppearance{qApp}}
{
    connect(m_system, &SystemAppearance::changed, this, &Theme::followSystem);
    followSystem();
}

void Theme::followSystem()
{
#ifndef Q_OS_MACOS
    // Otherwise the palette read below would be that of setScheme().
    QApplication::setPalette(QPalette{});
#endif
    const QColor window = QApplication::palette().color(QPalette::Window);
    const ColorScheme ofPalette = window.lightness() < 128 ? ColorScheme::dark : ColorScheme::light;
    m_scheme = m_system->scheme().value_or(ofPalette);
    m_contrast = m_system->contrast();
    applyColors();
}

QColor Theme::color(ColorRole role) const
{
    const RoleColors &colors = roleColors[static_cast<std::size_t>(role)];
    if (m_contrast == Contrast::high) {
        return m_scheme == ColorScheme::dark ? colors.darkHighContrast : colors.lightHighContrast;
    }
    return m_scheme == ColorScheme::dark ? colors.dark : colors.light;
}

double Theme::borderWidth(double width) const { return m_contrast == Contrast::high ? 2 * width : width; }

void Theme::setScheme(ColorScheme scheme)
{
    m_scheme = scheme;
    applyColors();
}

void Theme::setContrast(Contrast contrast)
{
    m_contrast = contrast;
    applyColors();
}

void Theme::applyColors()
{
#ifndef Q_OS_MACOS
    QApplication::setPalette(palette());
#endif
    // An unchanged palette sends no event, but not every role is part of it.
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
    gradient.setColorAt(0.0, Tone{0.1, 0.8, 0.85});
    gradient.setColorAt(0.5, Tone{0.45, 0.35, 0.95});
    gradient.setColorAt(1.0, Tone{0.95, 0.3, 0.75});
    return gradient;
}

QColor themeColor(ColorRole role) { return Theme::current().color(role); }

} // namespace quilmora
