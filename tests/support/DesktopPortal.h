#pragma once

#include "platform/SystemAppearance.h"

#include <QObject>
#include <QProcess>
#include <QThread>

#include <functional>
#include <memory>
#include <optional>

namespace quilmora::test {

class PortalSettings;

/// A session bus of its own, and on it the part of a desktop portal that tells the colour scheme and the
/// contrast, in a thread of its own.
class DesktopPortal final
{
public:
    /// Starts the bus; nobody is on it yet.
    DesktopPortal();
    Q_DISABLE_COPY_MOVE(DesktopPortal)
    ~DesktopPortal();

    /// Of the bus.
    const QString &address() const { return m_busAddress; }

    /// Lets the portal onto the bus.
    void start(std::optional<ColorScheme> scheme);
    /// Changes the setting, and tells it to everyone on the bus. With another `key` it is another setting
    /// that changes to the same value.
    void choose(std::optional<ColorScheme> scheme, const QString &key = QStringLiteral("color-scheme"));
    /// The same for the contrast, as all desktops have it.
    void chooseContrast(Contrast contrast);
    /// The same for the contrast, as GNOME had it before.
    void chooseGnomeContrast(Contrast contrast);
    /// From now on the portal knows no settings.
    void forgetSettings();
    /// How often the portal was asked.
    int questionCount() const;

private:
    void inThread(const std::function<void()> &task);
    void tell(const QString &group, const QString &key, const QVariant &value);

    QProcess m_daemon;
    QString m_busAddress;
    QThread m_thread;
    QObject m_context; ///< Lives in the thread.
    std::unique_ptr<PortalSettings> m_settings;
};

} // namespace quilmora::test
