#include "platform/PortalColorScheme.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int longestWait = 150; // milliseconds; the first window waits with it

QString service()
{
    return u"org.freedesktop.portal.Desktop"_s;
}

QString path()
{
    return u"/org/freedesktop/portal/desktop"_s;
}

QString interface()
{
    return u"org.freedesktop.portal.Settings"_s;
}

QString appearance()
{
    return u"org.freedesktop.appearance"_s;
}

QString colorScheme()
{
    return u"color-scheme"_s;
}

QDBusMessage question()
{
    QDBusMessage message = QDBusMessage::createMethodCall(service(), path(), interface(), u"Read"_s);
    message << appearance() << colorScheme();
    return message;
}

/// The portal puts a variant into a variant.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalColorScheme::PortalColorScheme(QDBusConnection bus, QObject *parent)
    : QObject{parent},
      connection{std::move(bus)}
{
    if (!connection.isConnected()) {
        return;
    }
    // By the name of the slot: a bus connects in no other way. It is handed the whole message, because the
    // types of arguments may not be known to the toolkit yet.
    connection.connect(service(), path(), interface(), u"SettingChanged"_s, this,
                       SLOT(settingChanged(QDBusMessage)));
    if (!askNow()) {
        askLater();
    }
}

bool PortalColorScheme::askNow()
{
    QDBusMessage message = question();
    message.setAutoStartService(false);
    const QDBusMessage answer = connection.call(message, QDBus::Block, longestWait);
    if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty()) {
        take(answer.arguments().constFirst());
        return true;
    }
    // Any other error is an answer too: the portal has no such setting.
    const auto error = QDBusError{answer}.type();
    return error != QDBusError::ServiceUnknown && error != QDBusError::NoReply &&
           error != QDBusError::Timeout && error != QDBusError::TimedOut;
}

void PortalColorScheme::askLater()
{
    auto *watcher = new QDBusPendingCallWatcher{connection.asyncCall(question()), this};
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer{*call};
        if (!answer.isError()) {
            take(answer.value().variant());
        }
    });
}

void PortalColorScheme::settingChanged(const QDBusMessage &signal)
{
    const QVariantList told = signal.arguments();
    if (told.size() == 3 && told.at(0) == appearance() && told.at(1) == colorScheme()) {
        take(told.at(2));
    }
}

void PortalColorScheme::take(const QVariant &value)
{
    constexpr uint prefersDark = 1;
    constexpr uint prefersLight = 2;
    const uint preference = unwrapped(value).toUInt();
    std::optional<ColorScheme> now;
    if (preference == prefersDark) {
        now = ColorScheme::dark;
    } else if (preference == prefersLight) {
        now = ColorScheme::light;
    }
    if (now != scheme) {
        scheme = now;
        Q_EMIT changed();
    }
}

} // namespace quilmora
