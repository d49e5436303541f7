#include "support/DesktopPortal.h"

#include "support/PortalSettings.h"

#include <QDBusConnection>
#include <QDBusError>

using namespace Qt::StringLiterals;

namespace quilmora::test
{
namespace
{

QString connectionName()
{
    return u"portal"_s;
}

uint number(std::optional<ColorScheme> scheme)
{
    if (!scheme) {
        return 0;
    }
    return *scheme == ColorScheme::dark ? 1 : 2;
}

} // namespace

DesktopPortal::DesktopPortal() : settings{std::make_unique<PortalSettings>()}
{
    daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    if (!daemon.waitForReadyRead()) {
        qFatal("No bus: %s", qPrintable(daemon.errorString()));
    }
    busAddress = QString::fromUtf8(daemon.readLine()).trimmed();
    context.moveToThread(&thread);
    settings->moveToThread(&thread);
    thread.start();
}

DesktopPortal::~DesktopPortal()
{
    inThread([this] {
        QDBusConnection::disconnectFromBus(connectionName());
        settings.reset();
    });
    thread.quit();
    thread.wait();
    daemon.terminate();
    daemon.waitForFinished();
}

void DesktopPortal::inThread(const std::function<void()> &task)
{
    QMetaObject::invokeMethod(&context, task, Qt::BlockingQueuedConnection);
}

void DesktopPortal::start(std::optional<ColorScheme> scheme)
{
    settings->scheme = number(scheme);
    inThread([this] {
        QDBusConnection bus = QDBusConnection::connectToBus(busAddress, connectionName());
        const bool there =
            bus.registerObject(u"/org/freedesktop/portal/desktop"_s, settings.get(),
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
            bus.registerService(u"org.freedesktop.portal.Desktop"_s);
        if (!there) {
            qFatal("No portal on the bus: %s", qPrintable(bus.lastError().message()));
        }
    });
}

void DesktopPortal::choose(std::optional<ColorScheme> scheme, const QString &key)
{
    settings->scheme = number(scheme);
    tell(u"org.freedesktop.appearance"_s, key, settings->scheme.load());
}

void DesktopPortal::chooseContrast(Contrast contrast)
{
    settings->contrast = contrast == Contrast::high ? 1 : 0;
    tell(u"org.freedesktop.appearance"_s, u"contrast"_s, settings->contrast.load());
}

void DesktopPortal::chooseGnomeContrast(Contrast contrast)
{
    settings->gnomeContrast = contrast == Contrast::high;
    tell(u"org.gnome.desktop.a11y.interface"_s, u"high-contrast"_s, settings->gnomeContrast.load());
}

void DesktopPortal::tell(const QString &group, const QString &key, const QVariant &value)
{
    inThread([&] { Q_EMIT settings->SettingChanged(group, key, QDBusVariant{value}); });
}

void DesktopPortal::forgetSettings()
{
    settings->known = false;
}

int DesktopPortal::questionCount() const
{
    return settings->questions;
}

} // namespace quilmora::test
