#include <orvimg/debayer/scratch.h>

#include <new>

#include <hwy/aligned_allocator.h>

namespace orvimg
{

namespace
{

struct ThreadMemory {
    hwy::AlignedFreeUniquePtr<std::uint8_t[]> block;
    std::size_t size = 0;
};

thread_local ThreadMemory threadMemory;

} // namespace

Scratch::Scratch(std::size_t bytes)
{
    if (threadMemory.size < bytes) {
        threadMemory.block.reset(); // the old block need not live beside the new one
        threadMemory.size = 0;
        threadMemory.block = hwy::AllocateAligned<std::uint8_t>(bytes);
        if (!threadMemory.block)
            throw std::bad_alloc();
        threadMemory.size = bytes;
    }
    next = threadMemory.block.get();
}

} // namespace orvimg
