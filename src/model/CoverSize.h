#pragma once

#include <QList>
#include <QString>

namespace quilmora {

/// A cover size that the user can choose: what its card shows, and the pixels to ask of the image service.
struct CoverSize {
    QString name;
    QString ratio;    ///< Width and height as shown, joined by a colon.
    QString iconName; ///< Symbol drawn on the card.
    qint64 width;     ///< In pixels.
    qint64 height;    ///< In pixels.

    /// The identity in lists; stricter equality compares every field.
    QString id() const { return name; }

    friend bool operator==(const CoverSize &, const CoverSize &) = default;

    /// The four sizes in the order of their cards; the first is the initial choice.
    static const QList<CoverSize> &presets();
};

size_t qHash(const CoverSize &size, size_t seed = 0) noexcept;

} // namespace quilmora
