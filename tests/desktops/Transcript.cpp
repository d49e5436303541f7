#include "Transcript.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::test {

Transcript::Transcript(const QString &path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("Cannot read %s", qUtf8Printable(path));
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        if (line.startsWith(u"== "_s)) {
            m_read.append({line.sliced(3), {}});
        } else if (line.startsWith(u"> "_s)) {
            m_read.last().steps.append({line.sliced(2), {}});
        } else if (!line.startsWith(u'#')) {
            m_read.last().steps.last().heard.append(line);
            m_known.append(line);
        }
    }
    m_known.removeDuplicates();
    std::sort(m_known.begin(), m_known.end(),
              [](const QString &one, const QString &other) { return one.size() > other.size(); });
}

QStringList Transcript::textsIn(const QString &speech) const
{
    QStringList texts;
    qsizetype position = 0;
    while (position < speech.size()) {
        const auto rest = QStringView{speech}.sliced(position);
        const auto text = std::find_if(m_known.begin(), m_known.end(), [rest](const QString &candidate) {
            return rest.startsWith(candidate);
        });
        if (text != m_known.end()) {
            texts.append(*text);
        }
        position += text != m_known.end() ? text->size() : 1;
    }
    return texts;
}

} // namespace quilmora::test
