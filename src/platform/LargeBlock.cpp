#include "platform/LargeBlock.h"

#include <new>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

namespace quilmora
{
namespace
{

constexpr std::size_t largePage = std::size_t{2} << 20U;

void *allocated(std::size_t size)
{
    if (size < largePage) {
        return std::malloc(size);
    }
    const std::size_t wholePages = (size + largePage - 1) / largePage * largePage;
    void *address = std::aligned_alloc(largePage, wholePages);
#ifdef Q_OS_LINUX
    if (address != nullptr) {
        // A wish; without it everything works too.
        madvise(address, wholePages, MADV_HUGEPAGE);
    }
#endif
    return address;
}

} // namespace

LargeBlock::LargeBlock(qsizetype size)
    : memory{static_cast<uchar *>(allocated(static_cast<std::size_t>(size)))},
      used{size}
{
    if (!memory) {
        throw std::bad_alloc{};
    }
}

void LargeBlock::shorten(qsizetype size)
{
    Q_ASSERT(size <= used);
    used = size;
}

} // namespace quilmora
