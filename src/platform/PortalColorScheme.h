#pragma once

#include "platform/ColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace quilmora
{

/// The look that the user chose, as the desktop portal's settings tell it over D-Bus. Main thread only.
class PortalColorScheme final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PortalColorScheme)

public:
    /// Asks the portal, and waits a moment for it if it is running; if not it is started, and an answer comes
    /// with changed().
    explicit PortalColorScheme(QDBusConnection bus, QObject *parent = nullptr);
    ~PortalColorScheme() override = default;

    /// Nothing where there is no portal or the user has no preference.
    std::optional<ColorScheme> stated() const { return scheme; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage &signal);

private:
    bool askNow();
    void askLater();
    void take(const QVariant &value);

    QDBusConnection connection;
    std::optional<ColorScheme> scheme;
};

} // namespace quilmora
