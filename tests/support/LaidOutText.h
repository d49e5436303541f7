#pragma once

#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace quilmora::test {

/// How many characters of the document have been broken into lines so far: what a view of a long text has
/// worked for.
inline qsizetype laidOutCharacters(const QTextDocument &document)
{
    qsizetype characters = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        characters += block.layout()->lineCount() > 0 ? block.length() : 0;
    }
    return characters;
}

} // namespace quilmora::test
