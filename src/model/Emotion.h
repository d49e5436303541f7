#pragma once

#include <QList>
#include <QString>

namespace quilmora {

/// A facial expression that the user can choose; its name is the chip's label and the wording in the prompt.
struct Emotion {
    QString name;

    QString id() const { return name; }

    /// Whether this is the entry that stands for a text of the user's own.
    bool isCustom() const;

    friend bool operator==(const Emotion &, const Emotion &) = default;

    /// The twelve expressions in the order of their chips; the first is the initial choice, the last the
    /// custom entry.
    static const QList<Emotion> &presets();
};

size_t qHash(const Emotion &emotion, size_t seed = 0) noexcept;

} // namespace quilmora
