#pragma once

#include "platform/ColorScheme.h"
#include "platform/Contrast.h"

#include <QObject>

#include <optional>

namespace quilmora {

/// The look that the system asks of its applications, as far as it states one otherwise than by its palette.
/// Needs a QGuiApplication. Main thread only.
class SystemAppearance final : public QObject
{
    Q_OBJECT

public:
    explicit SystemAppearance(QObject *parent = nullptr);

    /// Nothing where the palette is all there is to go by.
    std::optional<ColorScheme> scheme() const;
    Contrast contrast() const;

Q_SIGNALS:
    void changed();

private:
    class PortalAppearance *m_portal = nullptr;
};

} // namespace quilmora
