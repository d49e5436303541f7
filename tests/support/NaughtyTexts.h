#pragma once

#include <QList>
#include <QString>

namespace quilmora::test
{

/// A text that careless programs stumble over.
struct NaughtyText {
    const char *name;
    QString text;
    bool isStorable =
        true; ///< A statement of SQL ends at a NUL, and half a surrogate pair has no bytes in UTF-8.
};

/// The texts that fields, settings and answers have to take.
const QList<NaughtyText> &naughtyTexts();

} // namespace quilmora::test
