#pragma once

#include <QString>

#include <memory>

namespace quilmora::test {

class InputMethodContext;

/// An input method in place of the system's, as Qt sees one: with it a word is composed in the field
/// that has the focus, underlined, until it is committed.
class ComposingInputMethod final
{
public:
    ComposingInputMethod();
    Q_DISABLE_COPY_MOVE(ComposingInputMethod)
    ~ComposingInputMethod();

    /// Shows the word, half composed.
    void compose(const QString &word);

    /// From now on knows of no word, as an input method that has ended: a commit commits nothing.
    void drop();

private:
    const std::unique_ptr<InputMethodContext> m_context;
};

} // namespace quilmora::test
