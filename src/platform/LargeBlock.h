#pragma once

#include <QtGlobal>

#include <cstdlib>
#include <memory>

namespace quilmora
{

/// Memory for megabytes that are written once and read once. It is not touched before it is used, and where
/// the system has large pages it comes in those: bringing in small ones one by one would take a tenth of the
/// time of whoever fills them.
class LargeBlock final
{
public:
    /// `size` bytes of any value. Throws std::bad_alloc.
    explicit LargeBlock(qsizetype size);

    uchar *bytes() { return memory.get(); }
    const uchar *bytes() const { return memory.get(); }
    const char *chars() const { return static_cast<const char *>(static_cast<const void *>(bytes())); }
    qsizetype size() const { return used; }

    /// Leaves only the first `size` bytes in use.
    void shorten(qsizetype size);

private:
    struct Free {
        void operator()(void *address) const { std::free(address); }
    };
    std::unique_ptr<uchar, Free> memory;
    qsizetype used;
};

} // namespace quilmora
