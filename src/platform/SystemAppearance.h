#pragma once

#include <QObject>

#include <optional>

namespace quilmora {

/// The color scheme of a desktop.
enum class ColorScheme { light, dark };

/// The contrast of texts and borders.
enum class Contrast { normal, high };

/// The color scheme and the contrast that the system requests of applications besides its palette. Needs a
/// QGuiApplication. Main thread only.
class SystemAppearance final : public QObject
{
    Q_OBJECT

public:
    explicit SystemAppearance(QObject *parent = nullptr);

    /// Nothing where only the palette shows the scheme.
    std::optional<ColorScheme> scheme() const;
    Contrast contrast() const;

Q_SIGNALS:
    void changed();

private:
    class PortalAppearance *m_portal = nullptr;
};

} // namespace quilmora
