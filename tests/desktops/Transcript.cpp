#include "Transcript.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::test
{

Transcript::Transcript(const QString &path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("Cannot read %s", qUtf8Printable(path));
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        if (line.startsWith(u"== "_s)) {
            read.append({line.sliced(3), {}});
        } else if (line.startsWith(u"> "_s)) {
            read.last().steps.append({line.sliced(2), {}});
        } else if (!line.startsWith(u'#')) {
            read.last().steps.last().heard.append(line);
            known.append(line);
        }
    }
    known.removeDuplicates();
    std::sort(known.begin(), known.end(),
              [](const QString &one, const QString &other) { return one.size() > other.size(); });
}

QStringList Transcript::textsIn(const QString &speech) const
{
    QStringList texts;
    qsizetype position = 0;
    while (position < speech.size()) {
        const auto rest = QStringView{speech}.sliced(position);
        const auto text = std::find_if(known.begin(), known.end(), [rest](const QString &candidate) {
            return rest.startsWith(candidate);
        });
        if (text != known.end()) {
            texts.append(*text);
        }
        position += text != known.end() ? text->size() : 1;
    }
    return texts;
}

} // namespace quilmora::test
