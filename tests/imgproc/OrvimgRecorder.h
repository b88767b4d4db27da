#pragma once

#include <ostream>
#include <string>
#include <vector>

/// The functions of orvimg as this test program defines them: the dynamic linker lets the library
/// under test call them instead of the real ones. They record their calls and fill what they are
/// asked to fill with values that a test can foresee.
namespace orvimg_recorder
{

/// One call: the pictures and contexts it was given, and its numbers, both in their order.
struct Call {
    std::string function;
    std::vector<const void*> pointers;
    std::vector<double> numbers;

    friend bool operator==(const Call& a, const Call& b)
    {
        return a.function == b.function && a.pointers == b.pointers && a.numbers == b.numbers;
    }
    friend std::ostream& operator<<(std::ostream& out, const Call& call)
    {
        out << call.function << '(';
        for (const void* pointer : call.pointers)
            out << pointer << ' ';
        for (const double number : call.numbers)
            out << number << ' ';
        return out << ')';
    }
};

using Calls = std::vector<Call>;

/// \return the calls since the last time, or since the start.
Calls take();

/// The context that color_correction_init() hands out next; each is another one.
const void* nextContext();

/// What the recorded functions do to the data.
unsigned char tableEntry(int level, int brightness, int contrast, int gamma);
unsigned char bestTableEntry(int level);
constexpr double estimatedRedGain = 1.5;
constexpr double estimatedBlueGain = 0.75;
constexpr int medianIncrement = 1;     // added to each sample
constexpr int correctionIncrement = 3; // added to each colour byte

} // namespace orvimg_recorder
