#pragma once

#include "platform/ColorScheme.h"
#include "platform/Contrast.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace quilmora {

/// The look that the user chose, as the desktop portal's settings tell it over D-Bus. Main thread only.
class PortalAppearance final : public QObject
{
    Q_OBJECT

public:
    /// Asks the portal, and waits a moment for it if it is running; if not it is started, and an answer comes
    /// with changed().
    explicit PortalAppearance(QDBusConnection bus, QObject *parent = nullptr);

    /// Nothing where there is no portal or the user has no preference.
    std::optional<ColorScheme> scheme() const { return m_look.scheme; }
    Contrast contrast() const;

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage &signal);

private:
    struct Look {
        std::optional<ColorScheme> scheme;
        bool isContrastHigher = false;
        bool isGnomeContrastHigh =
            false; ///< The setting of GNOME before the portal had one for all desktops.

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
