#pragma once

#include <QList>
#include <QString>

namespace quilmora::test {

/// A text that careless programs stumble over.
struct NaughtyText {
    const char *name;
    QString text;
    /// What a field shows of it: without NUL, at which a statement of SQL ends, halves of surrogate pairs,
    /// for which Qt writes a question mark
    /// in UTF-8, and characters that are reserved.
    QString readable = text;
};

/// The texts that fields, settings and answers have to take.
const QList<NaughtyText> &naughtyTexts();

} // namespace quilmora::test
