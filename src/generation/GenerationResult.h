#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <variant>

namespace quilmora {

/// What can go wrong in image generation, each case with the text that the user sees.
class GenError final
{
public:
    enum class Case { invalidURL, invalidAPIKey, invalidModelID, noData, parseFailed, serverError };

    /// An error without a message of its own; not for serverError.
    explicit GenError(Case kind) : m_errorCase{kind} {}

    /// An error with a text of the server, or about a response that cannot be parsed.
    static GenError serverError(const QString &message);

    Case kind() const { return m_errorCase; }

    /// The text for the user.
    QString errorDescription() const;

    friend bool operator==(const GenError &, const GenError &) = default;

private:
    Case m_errorCase;
    QString m_message;
};

/// A failure of the connection, with Qt's text.
struct TransportError {
    QString description;
};

/// The outcome of one generation: the picture or one of the two kinds of error.
using GenerationResult = std::variant<QImage, GenError, TransportError>;

using GenerationCompletion = std::function<void(const GenerationResult &)>;

/// The text for the user of a failed result; empty for a picture.
QString localizedDescription(const GenerationResult &result);

} // namespace quilmora
