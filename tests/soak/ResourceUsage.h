#pragma once

#include <QtGlobal>

namespace quilmora::test {

/// What this process holds of the system at one moment.
struct ResourceUsage {
    qint64 heapBytes = 0; ///< In use, without the database's cache, which grows to a bound of its own; 0
                          ///< where the system does not tell, negative under the address sanitizer.
    int descriptors = 0;
    int threads = 0;

    static ResourceUsage now();
};

} // namespace quilmora::test
