#include "ResourceUsage.h"

#include <QDir>

#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

int entriesOf(const QString &folder)
{
    return static_cast<int>(
        QDir{folder}.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
}

} // namespace

ResourceUsage ResourceUsage::now()
{
    ResourceUsage resourceUsage;
#ifdef __GLIBC__
    const struct mallinfo2 heap = mallinfo2();
    resourceUsage.heapBytes = static_cast<qint64>(heap.uordblks + heap.hblkhd) - sqlite3_memory_used();
#endif
    resourceUsage.descriptors = entriesOf(u"/proc/self/fd"_s);
    resourceUsage.threads = entriesOf(u"/proc/self/task"_s);
    return resourceUsage;
}

} // namespace quilmora::test
