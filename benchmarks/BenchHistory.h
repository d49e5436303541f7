#pragma once

#include "store/DatabaseManager.h"

#include <QTemporaryDir>

namespace quilmora::bench {

/// A database with covers and their files, which are all the same picture of 2848 x 1600 pixels.
class BenchHistory final
{
public:
    explicit BenchHistory(int count);
    Q_DISABLE_COPY_MOVE(BenchHistory)
    ~BenchHistory() = default;

    QString coverFile(int number) const
    {
        return folder.filePath(QStringLiteral("cover_%1.png").arg(number));
    }

    const QTemporaryDir folder;
    DatabaseManager database;
};

} // namespace quilmora::bench
