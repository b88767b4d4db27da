#pragma once

#include <cstddef>
#include <cstdint>

namespace orvimg
{

/// Working memory of the calling thread, kept between calls so that a steady stream of pictures
/// allocates nothing. One Scratch per thread at a time.
class Scratch
{
public:
    /// \param bytes as much as will be taken in all, with blockOverhead for each block
    /// \throws std::bad_alloc
    explicit Scratch(std::size_t bytes);
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    static constexpr std::size_t blockOverhead = 64;

    /// \return an uninitialised block, aligned for every vector unit.
    template <typename T>
    T* take(std::size_t count)
    {
        std::uint8_t* const block = next;
        next += (count * sizeof(T) + blockOverhead - 1) / blockOverhead * blockOverhead;
        return reinterpret_cast<T*>(block);
    }

private:
    std::uint8_t* next;
};

} // namespace orvimg
