#pragma once

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <QObject>

#include <atomic>

namespace quilmora::test {

using PortalSettingGroups = QMap<QString, QVariantMap>;

/// The settings as a portal offers them on a bus.
class PortalSettings final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
    Q_DISABLE_COPY_MOVE(PortalSettings)

public:
    PortalSettings();
    ~PortalSettings() override = default;

    std::atomic_uint scheme = 0;
    std::atomic_uint contrast = 0;
    std::atomic_bool gnomeContrast = false;
    std::atomic_bool known = true;
    std::atomic_int questions = 0;

public Q_SLOTS:
    /// With the name that it has on the bus.
    quilmora::test::PortalSettingGroups ReadAll(const QStringList &groups);

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

} // namespace quilmora::test
