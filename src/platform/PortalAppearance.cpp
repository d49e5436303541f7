#include "platform/PortalAppearance.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int longestWait = 150; // Milliseconds; delays the first window.

constexpr auto service = "org.freedesktop.portal.Desktop"_L1;
constexpr auto path = "/org/freedesktop/portal/desktop"_L1;
constexpr auto interface = "org.freedesktop.portal.Settings"_L1;

// The groups of settings that are read.
constexpr auto appearance = "org.freedesktop.appearance"_L1;
constexpr auto gnomeAccessibility = "org.gnome.desktop.a11y.interface"_L1;

QDBusMessage question()
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, u"ReadAll"_s);
    message << QStringList{appearance, gnomeAccessibility};
    return message;
}

/// The portal wraps the variant in another one.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalAppearance::PortalAppearance(QDBusConnection bus, QObject *parent)
    : QObject{parent},
      m_connection{std::move(bus)}
{
    if (!m_connection.isConnected()) {
        return;
    }
    // QDBusConnection connects by the name of the slot only. The slot gets the whole message, because Qt may
    // not know the types of its arguments.
    m_connection.connect(service, path, interface, u"SettingChanged"_s, this,
                         SLOT(settingChanged(QDBusMessage)));
    if (!askNow()) {
        askLater();
    }
}

bool PortalAppearance::askNow()
{
    QDBusMessage message = question();
    message.setAutoStartService(false);
    const QDBusMessage answer = m_connection.call(message, QDBus::Block, longestWait);
    if (answer.type() == QDBusMessage::ReplyMessage) {
        takeAll(answer);
        return true;
    }
    // Any other error means that the portal has no settings.
    const auto error = QDBusError{answer}.type();
    return error != QDBusError::ServiceUnknown && error != QDBusError::NoReply &&
           error != QDBusError::Timeout && error != QDBusError::TimedOut;
}

void PortalAppearance::askLater()
{
    auto *watcher = new QDBusPendingCallWatcher{m_connection.asyncCall(question()), this};
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        takeAll(call->reply());
    });
}

void PortalAppearance::takeAll(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != u"a{sa{sv}}"_s) {
        return;
    }
    QMap<QString, QVariantMap> groups;
    answer.arguments().constFirst().value<QDBusArgument>() >> groups;
    Look now;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        for (auto setting = group->cbegin(); setting != group->cend(); ++setting) {
            take(group.key(), setting.key(), setting.value(), now);
        }
    }
    setLook(now);
}

void PortalAppearance::settingChanged(const QDBusMessage &signal)
{
    const QVariantList told = signal.arguments();
    if (told.size() == 3) {
        Look now = m_look;
        take(told.at(0).toString(), told.at(1).toString(), told.at(2), now);
        setLook(now);
    }
}

void PortalAppearance::take(const QString &group, const QString &key, const QVariant &value, Look &into)
{
    constexpr uint prefersDark = 1;
    constexpr uint prefersLight = 2;
    constexpr uint prefersHigherContrast = 1;
    const QVariant told = unwrapped(value);
    if (group == appearance && key == u"color-scheme"_s) {
        const uint preference = told.toUInt();
        into.scheme = preference == prefersDark    ? std::optional{ColorScheme::dark}
                      : preference == prefersLight ? std::optional{ColorScheme::light}
                                                   : std::nullopt;
    } else if (group == appearance && key == u"contrast"_s) {
        into.isContrastHigher = told.toUInt() == prefersHigherContrast;
    } else if (group == gnomeAccessibility && key == u"high-contrast"_s) {
        into.isGnomeContrastHigh = told.toBool();
    }
}

void PortalAppearance::setLook(const Look &now)
{
    if (now != m_look) {
        m_look = now;
        Q_EMIT changed();
    }
}

} // namespace quilmora
