#include "support/DesktopPortal.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>

#include <atomic>

using namespace Qt::StringLiterals;

namespace quilmora::test {

using PortalSettingGroups = QMap<QString, QVariantMap>;

/// The settings as a portal offers them on a bus.
class PortalSettings final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
    Q_DISABLE_COPY_MOVE(PortalSettings)

public:
    PortalSettings() { qDBusRegisterMetaType<PortalSettingGroups>(); }
    ~PortalSettings() override = default;

    std::atomic_uint scheme = 0;
    std::atomic_uint contrast = 0;
    std::atomic_bool gnomeContrast = false;
    std::atomic_bool known = true;
    std::atomic_int questions = 0;

public Q_SLOTS:
    /// With the name that it has on the bus.
    quilmora::test::PortalSettingGroups ReadAll(const QStringList &groups)
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

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

namespace {

QString connectionName() { return u"portal"_s; }

uint number(std::optional<ColorScheme> scheme)
{
    if (!scheme) {
        return 0;
    }
    return *scheme == ColorScheme::dark ? 1 : 2;
}

} // namespace

DesktopPortal::DesktopPortal() : m_settings{std::make_unique<PortalSettings>()}
{
    m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    if (!m_daemon.waitForReadyRead()) {
        qFatal("No bus: %s", qPrintable(m_daemon.errorString()));
    }
    m_busAddress = QString::fromUtf8(m_daemon.readLine()).trimmed();
    m_context.moveToThread(&m_thread);
    m_settings->moveToThread(&m_thread);
    m_thread.start();
}

DesktopPortal::~DesktopPortal()
{
    inThread([this] {
        QDBusConnection::disconnectFromBus(connectionName());
        m_settings.reset();
    });
    m_thread.quit();
    m_thread.wait();
    m_daemon.terminate();
    m_daemon.waitForFinished();
}

void DesktopPortal::inThread(const std::function<void()> &task)
{
    QMetaObject::invokeMethod(&m_context, task, Qt::BlockingQueuedConnection);
}

void DesktopPortal::start(std::optional<ColorScheme> scheme)
{
    m_settings->scheme = number(scheme);
    inThread([this] {
        QDBusConnection bus = QDBusConnection::connectToBus(m_busAddress, connectionName());
        const bool there =
            bus.registerObject(u"/org/freedesktop/portal/desktop"_s, m_settings.get(),
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
            bus.registerService(u"org.freedesktop.portal.Desktop"_s);
        if (!there) {
            qFatal("No portal on the bus: %s", qPrintable(bus.lastError().message()));
        }
    });
}

void DesktopPortal::choose(std::optional<ColorScheme> scheme, const QString &key)
{
    m_settings->scheme = number(scheme);
    tell(u"org.freedesktop.appearance"_s, key, m_settings->scheme.load());
}

void DesktopPortal::chooseContrast(Contrast contrast)
{
    m_settings->contrast = contrast == Contrast::high ? 1 : 0;
    tell(u"org.freedesktop.appearance"_s, u"contrast"_s, m_settings->contrast.load());
}

void DesktopPortal::chooseGnomeContrast(Contrast contrast)
{
    m_settings->gnomeContrast = contrast == Contrast::high;
    tell(u"org.gnome.desktop.a11y.interface"_s, u"high-contrast"_s, m_settings->gnomeContrast.load());
}

void DesktopPortal::tell(const QString &group, const QString &key, const QVariant &value)
{
    inThread([&] { Q_EMIT m_settings->SettingChanged(group, key, QDBusVariant{value}); });
}

void DesktopPortal::forgetSettings() { m_settings->known = false; }

int DesktopPortal::questionCount() const { return m_settings->questions; }

} // namespace quilmora::test

#include "DesktopPortal.moc"
