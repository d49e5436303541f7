#pragma once

#include "platform/SystemAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace quilmora {

/// The user's color scheme and contrast in the settings of the desktop portal, read over D-Bus. Main thread
/// only.
class PortalAppearance final : public QObject
{
    Q_OBJECT

public:
    /// Reads the settings, with a short timeout, if the portal is running; otherwise starts it, and its reply
    /// emits changed().
    explicit PortalAppearance(QDBusConnection bus, QObject *parent = nullptr);

    /// Nothing without a portal and where the user has no preference.
    std::optional<ColorScheme> scheme() const { return m_look.scheme; }
    Contrast contrast() const
    {
        return m_look.isContrastHigher || m_look.isGnomeContrastHigh ? Contrast::high : Contrast::normal;
    }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage &signal);

private:
    struct Look {
        std::optional<ColorScheme> scheme;
        bool isContrastHigher = false;
        bool isGnomeContrastHigh = false; ///< Older than the portal's own setting.

        bool operator==(const Look &) const = default;
    };

    bool askNow();
    void askLater();
    void takeAll(const QDBusMessage &answer);
    static void take(const QString &group, const QString &key, const QVariant &value, Look &into);
    void setLook(const Look &now);

    QDBusConnection m_connection;
    Look m_look;
};

} // namespace quilmora
