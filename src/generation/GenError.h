#pragma once

#include <QString>

namespace quilmora {

/// What can go wrong in image generation, each case with the text that the user sees.
class GenError final
{
public:
    enum class Case { invalidURL, invalidAPIKey, invalidModelID, noData, parseFailed, serverError };

    /// An error without a message of its own; not for serverError.
    explicit GenError(Case kind);

    /// An error that the server, or an answer that was not understood, describes itself.
    static GenError serverError(const QString &message);

    Case kind() const { return m_errorCase; }

    /// The text for the user.
    QString errorDescription() const;

    friend bool operator==(const GenError &, const GenError &) = default;

private:
    Case m_errorCase;
    QString m_message;
};

} // namespace quilmora
