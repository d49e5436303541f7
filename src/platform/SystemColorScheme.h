#pragma once

#include "platform/ColorScheme.h"

#include <QObject>

#include <optional>

namespace quilmora
{

/// The look that the system asks of its applications, as far as it states one otherwise than by its palette.
/// Needs a QGuiApplication. Main thread only.
class SystemColorScheme final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SystemColorScheme)

public:
    explicit SystemColorScheme(QObject *parent = nullptr);
    ~SystemColorScheme() override = default;

    /// Nothing where the palette is all there is to go by.
    std::optional<ColorScheme> stated() const;

Q_SIGNALS:
    void changed();

private:
    class PortalColorScheme *portal = nullptr;
};

} // namespace quilmora
