#pragma once

#include <QList>
#include <QStringList>

namespace quilmora::test {

/// What a user does, step by step, and the texts of the program that are to be heard then.
class Transcript final
{
public:
    struct Step {
        QString action;
        QStringList heard;
    };
    struct Chapter {
        QString name;
        QList<Step> steps;
    };

    /// Reads a file in the format that OrcaDesktopTest.txt describes; the test program ends when that fails.
    explicit Transcript(const QString &path);

    const QList<Chapter> &chapters() const { return m_read; }

    /// The texts of this transcript that are in `speech`, in its order. Everything else in it is passed over.
    QStringList textsIn(const QString &speech) const;

private:
    QList<Chapter> m_read;
    QStringList m_known; ///< All texts, the longest first.
};

} // namespace quilmora::test
