#include "support/PortalSettings.h"

using namespace Qt::StringLiterals;

namespace quilmora::test {

PortalSettings::PortalSettings()
{
    qDBusRegisterMetaType<PortalSettingGroups>();
}

PortalSettingGroups PortalSettings::ReadAll(const QStringList &groups)
{
    ++questions;
    PortalSettingGroups all;
    const QString appearance = u"org.freedesktop.appearance"_s;
    if (known && groups.contains(appearance)) {
        all.insert(appearance, {{u"color-scheme"_s, scheme.load()}, {u"contrast"_s, contrast.load()}});
    }
    const QString gnome = u"org.gnome.desktop.a11y.interface"_s;
    if (known && groups.contains(gnome)) {
        all.insert(gnome, {{u"high-contrast"_s, gnomeContrast.load()}});
    }
    return all;
}

} // namespace quilmora::test
