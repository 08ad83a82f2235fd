// An allocator for buffers the size of a whole text: blocks of 2 MiB and more are mapped directly
// with their pages populated in the one call, so that filling a 100 MB buffer does not take some
// twenty-five thousand page faults, each a trip into the kernel. Smaller blocks come from the
// ordinary heap. (Huge pages would need fewer faults but may stall on memory compaction.)
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <sys/mman.h>

namespace mirtex {

template<class T>
struct LargeBlockAllocator
{
    using value_type = T;
    static constexpr std::size_t kLargeBytes = std::size_t(2) << 20;

    LargeBlockAllocator() = default;

    template<class U>
    LargeBlockAllocator(const LargeBlockAllocator<U> &)
    {}

    T *allocate(std::size_t count)
    {
        const std::size_t bytes = count * sizeof(T);
        if (bytes < kLargeBytes)
            return std::allocator<T>().allocate(count);
        void *block = mmap(nullptr,
                           bytes,
                           PROT_READ | PROT_WRITE,
                           MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE,
                           -1,
                           0);
        if (block == MAP_FAILED)
            throw std::bad_alloc();
        return static_cast<T *>(block);
    }

    void deallocate(T *block, std::size_t count)
    {
        const std::size_t bytes = count * sizeof(T);
        if (bytes < kLargeBytes)
            return std::allocator<T>().deallocate(block, count);
        munmap(block, bytes);
    }

    template<class U>
    friend bool operator==(const LargeBlockAllocator &, const LargeBlockAllocator<U> &)
    {
        return true;
    }
};

// UTF-8 text built for a whole document (the new text of a replace all).
using LargeUtf8 = std::basic_string<char, std::char_traits<char>, LargeBlockAllocator<char>>;

} // namespace mirtex
