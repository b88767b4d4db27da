#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include <support/EveryTarget.h>

#include <orvimg/orvimg_threads.h>

/// An array between two pages that cannot be touched, so that a kernel that reads or writes beyond
/// it ends the test program; what its pages have to spare is watched as well.
template <typename T>
class GuardedArray
{
public:
    enum class Against { LowerPage, UpperPage };

    GuardedArray(const std::vector<T>& content, Against side)
        : page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
        , size(content.size())
        , bytes((size * sizeof(T) + page - 1) / page * page)
        , mapping(mmap(nullptr, bytes + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        auto* const start = static_cast<std::uint8_t*>(mapping) + page;
        mprotect(start, bytes, PROT_READ | PROT_WRITE);
        std::fill_n(start, bytes, canary);
        const std::size_t spare = side == Against::UpperPage ? bytes - size * sizeof(T) : 0;
        elements = reinterpret_cast<T*>(static_cast<void*>(start + spare));
        std::copy(content.begin(), content.end(), elements);
    }
    GuardedArray(const GuardedArray&) = delete;
    GuardedArray& operator=(const GuardedArray&) = delete;
    ~GuardedArray() { munmap(mapping, bytes + 2 * page); }

    T* data() const { return elements; }
    std::vector<T> content() const { return {elements, elements + size}; }

    bool isSpareUntouched() const
    {
        const auto* const start = static_cast<const std::uint8_t*>(mapping) + page;
        const auto* const first = static_cast<const std::uint8_t*>(static_cast<void*>(elements));
        const auto isCanary = [](std::uint8_t byte) { return byte == canary; };
        return std::all_of(start, first, isCanary) &&
               std::all_of(first + size * sizeof(T), start + bytes, isCanary);
    }

private:
    static constexpr std::uint8_t canary = 0xA5;

    std::size_t page;
    std::size_t size;
    std::size_t bytes;
    void* mapping;
    T* elements = nullptr;
};

template <typename T>
std::vector<T> randomPicture(std::size_t samples, unsigned lowest, unsigned highest, unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_int_distribution<unsigned> level(lowest, highest);
    std::vector<T> picture(samples);
    std::generate(picture.begin(), picture.end(), [&] { return static_cast<T>(level(generator)); });
    return picture;
}

/// Widths around the vector sizes of all targets, up to two of the widest.
inline const std::vector<int> awkwardWidths{1,  2,  3,  5,  6,  15, 16,  17,  31,
                                            32, 33, 63, 64, 65, 95, 127, 128, 131};
inline const std::vector<int> awkwardHeights{1, 2, 3, 4, 5, 8};
