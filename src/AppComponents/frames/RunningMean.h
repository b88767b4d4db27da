#pragma once

/// \file
/// The kernel of RingFrameBuffer: one pass that replaces a frame in the running sums and writes
/// the mean.

#include <cstddef>
#include <cstdint>

struct RunningMean {
    std::int32_t* sums;  // one per sample
    std::size_t samples; // per frame
    int count;           // frames held, the new one included: 1 ... 64
    bool replaces;       // the slot holds a frame that leaves the sums

    /// For each sample: takes the one in \p slot out of its sum when it leaves, stores the one
    /// of \p frame in \p slot, adds it to the sum and writes sum / count to \p average.
    /// \param frame,average the same array or apart.
    void append8(const unsigned char* frame, unsigned char* slot, unsigned char* average) const;
    /// The same for little-endian words at any address.
    void append16(const unsigned char* frame, unsigned char* slot, unsigned char* average) const;
};
