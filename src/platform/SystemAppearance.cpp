#include "platform/SystemAppearance.h"

#include <QGuiApplication>
#include <QStyleHints>
#if QT_VERSION >= QT_VERSION_CHECK(6, 10, 0)
#include <QAccessibilityHints>
#endif

#ifdef QUILMORA_DBUS
#include "platform/PortalAppearance.h"
#endif

namespace quilmora {
namespace {

std::optional<ColorScheme> toolkitScheme()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    switch (QGuiApplication::styleHints()->colorScheme()) {
    case Qt::ColorScheme::Dark:
        return ColorScheme::dark;
    case Qt::ColorScheme::Light:
        return ColorScheme::light;
    default:
        break;
    }
#endif
    return std::nullopt;
}

Contrast toolkitContrast()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 10, 0)
    if (QGuiApplication::styleHints()->accessibility()->contrastPreference() ==
        Qt::ContrastPreference::HighContrast) {
        return Contrast::high;
    }
#endif
    return Contrast::normal;
}

} // namespace

SystemAppearance::SystemAppearance(QObject *parent) : QObject{parent}
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this,
            &SystemAppearance::changed);
#endif
#if QT_VERSION >= QT_VERSION_CHECK(6, 10, 0)
    connect(QGuiApplication::styleHints()->accessibility(), &QAccessibilityHints::contrastPreferenceChanged,
            this, &SystemAppearance::changed);
#endif
#ifdef QUILMORA_DBUS
    m_portal = new PortalAppearance{QDBusConnection::sessionBus(), this};
    connect(m_portal, &PortalAppearance::changed, this, &SystemAppearance::changed);
#endif
}

std::optional<ColorScheme> SystemAppearance::scheme() const
{
#ifdef QUILMORA_DBUS
    if (const auto told = m_portal->scheme()) {
        return told;
    }
#endif
    return toolkitScheme();
}

Contrast SystemAppearance::contrast() const
{
#ifdef QUILMORA_DBUS
    if (m_portal->contrast() == Contrast::high) {
        return Contrast::high;
    }
#endif
    return toolkitContrast();
}

} // namespace quilmora
