#pragma once

#include <QImage>
#include <QList>
#include <QString>

namespace quilmora {

/// A cover size that the user can choose: the texts of its card, and the pixels to request.
struct CoverSize {
    QString name;
    QString ratio;    ///< Width and height as shown, joined by a colon.
    QString iconName; ///< Symbol drawn on the card.
    qint64 width;     ///< In pixels.
    qint64 height;    ///< In pixels.

    /// The identity in lists; operator== compares every field.
    QString id() const { return name; }

    friend bool operator==(const CoverSize &, const CoverSize &) = default;

    /// The four sizes in the order of their cards; the first is the initial choice.
    static const QList<CoverSize> &presets();
};

size_t qHash(const CoverSize &size, size_t seed = 0) noexcept;

/// A facial expression that the user can choose; its name is the chip's label and the wording in the prompt.
struct Emotion {
    QString name;

    QString id() const { return name; }

    /// Whether this is the entry for the user's own text.
    bool isCustom() const;

    friend bool operator==(const Emotion &, const Emotion &) = default;

    /// The twelve expressions in the order of their chips; the first is the initial choice, the last the
    /// custom entry.
    static const QList<Emotion> &presets();
};

size_t qHash(const Emotion &emotion, size_t seed = 0) noexcept;

/// What the user chose and typed for one cover.
struct CoverInputs {
    CoverSize selectedSize;
    QString titleText;
    QString sceneText; ///< What the background should show.
    Emotion selectedEmotion;
    QString customEmotion; ///< Used only while the custom expression is selected.
    QImage faceImage;      ///< Photo of the presenter; null for none.
    QImage styleImage;     ///< Sample cover; null for none.
    QString advancedText;  ///< Further style instructions.
};

} // namespace quilmora
