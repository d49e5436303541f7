#include "platform/SystemColorScheme.h"

#include <QGuiApplication>
#include <QStyleHints>

#ifdef QUILMORA_DBUS
#include "platform/PortalColorScheme.h"
#endif

namespace quilmora
{
namespace
{

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
std::optional<ColorScheme> toolkitScheme()
{
    switch (QGuiApplication::styleHints()->colorScheme()) {
    case Qt::ColorScheme::Dark:
        return ColorScheme::dark;
    case Qt::ColorScheme::Light:
        return ColorScheme::light;
    default:
        return std::nullopt;
    }
}
#else
std::optional<ColorScheme> toolkitScheme()
{
    return std::nullopt;
}
#endif

} // namespace

SystemColorScheme::SystemColorScheme(QObject *parent) : QObject{parent}
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this,
            &SystemColorScheme::changed);
#endif
#ifdef QUILMORA_DBUS
    portal = new PortalColorScheme{QDBusConnection::sessionBus(), this};
    connect(portal, &PortalColorScheme::changed, this, &SystemColorScheme::changed);
#endif
}

std::optional<ColorScheme> SystemColorScheme::stated() const
{
#ifdef QUILMORA_DBUS
    if (const auto scheme = portal->stated()) {
        return scheme;
    }
#endif
    return toolkitScheme();
}

} // namespace quilmora
