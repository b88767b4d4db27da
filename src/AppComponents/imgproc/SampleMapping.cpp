#include <AppComponents/imgproc/SampleMapping.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#define HWY_WANT_AVX3_DL // byte permutes that look up 128 table entries at once
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "AppComponents/imgproc/SampleMapping.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef APPCOMPONENTS_GENTLE_TABLE // this file is compiled once for each instruction set
#define APPCOMPONENTS_GENTLE_TABLE
namespace samples
{

/// A table of 4096 entries told by its blocks of sixteen, for tables that never fall within a
/// block and rise by no more than three there: a tenth of the look-ups find an entry.
struct GentleTable {
    static constexpr int blocks = 256;
    static constexpr int blockSize = 16;
    static constexpr int mostRises = 3;

    std::uint8_t firsts[blocks];           // the entry with which a block begins
    std::uint8_t rises[mostRises][blocks]; // places in the block, blockSize for none

    /// \return false if the table is not of this kind.
    bool describe(const unsigned char* table)
    {
        for (int block = 0; block < blocks; ++block) {
            const unsigned char* const entries = table + blockSize * block;
            firsts[block] = entries[0];
            int risen = 0;
            for (int place = 1; place < blockSize; ++place) {
                const int until = entries[place] - entries[0];
                if (until < risen || until > mostRises)
                    return false;
                for (; risen < until; ++risen)
                    rises[risen][block] = static_cast<std::uint8_t>(place);
            }
            for (; risen < mostRises; ++risen)
                rises[risen][block] = blockSize;
        }
        return true;
    }
};

// Below, describing a table takes longer than looking up in the plain one.
constexpr std::ptrdiff_t worthDescribing = 32768;

} // namespace samples
#endif

HWY_BEFORE_NAMESPACE();
namespace samples::HWY_NAMESPACE
{
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR // the plain loops behind the kernels do everything

std::ptrdiff_t shift(const unsigned char*, std::ptrdiff_t, int, unsigned char*)
{
    return 0;
}

std::ptrdiff_t map8(const unsigned char*, std::ptrdiff_t, const unsigned char*, unsigned char*)
{
    return 0;
}

#else

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::uint16_t, Bytes>;
using ByteVector = hn::Vec<Bytes>;
using WordVector = hn::Vec<Words>;

WordVector loadWords(const unsigned char* at)
{
    return hn::BitCast(Words(), hn::LoadU(Bytes(), at));
}

/// The low bytes of two vectors of words, those of \p first first.
ByteVector lowBytes(WordVector first, WordVector second)
{
    return hn::ConcatEven(Bytes(), hn::BitCast(Bytes(), second), hn::BitCast(Bytes(), first));
}

std::ptrdiff_t shift(const unsigned char* src, std::ptrdiff_t count, int bits, unsigned char* dst)
{
    const std::ptrdiff_t lanes = hn::Lanes(Bytes());
    std::ptrdiff_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const WordVector first = hn::ShiftRightSame(loadWords(src + 2 * i), bits);
        const WordVector second = hn::ShiftRightSame(loadWords(src + 2 * i + lanes), bits);
        hn::StoreU(lowBytes(first, second), Bytes(), dst + i);
    }
    return i;
}

#if HWY_TARGET == HWY_AVX3_DL

/// A table of 256 bytes held in registers.
class ByteTable
{
public:
    explicit ByteTable(const unsigned char* table)
        : low0(_mm512_loadu_si512(table))
        , low1(_mm512_loadu_si512(table + 64))
        , high0(_mm512_loadu_si512(table + 128))
        , high1(_mm512_loadu_si512(table + 192))
    {
    }
    __m512i operator[](__m512i index) const
    {
        const __m512i low = _mm512_permutex2var_epi8(low0, index, low1);
        const __m512i high = _mm512_permutex2var_epi8(high0, index, high1);
        return _mm512_mask_blend_epi8(_mm512_movepi8_mask(index), low, high);
    }

private:
    __m512i low0, low1, high0, high1;
};

std::ptrdiff_t map8(const unsigned char* src, std::ptrdiff_t count, const unsigned char* table,
                    unsigned char* dst)
{
    const ByteTable entries(table);
    std::ptrdiff_t i = 0;
    for (; i + 64 <= count; i += 64)
        _mm512_storeu_si512(dst + i, entries[_mm512_loadu_si512(src + i)]);
    return i;
}

// The whole table passes through the permute unit, 128 entries at a time; each sample keeps what
// it finds in its own part. Several vectors share each load of a part. The permute unit is the
// limit, so the load units look up eight more samples beside each part.
template <int parts>
std::ptrdiff_t map16(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                     unsigned char* dst)
{
    constexpr int vectors = 6;
    constexpr std::ptrdiff_t permuted = 64 * vectors;
    constexpr std::ptrdiff_t block = permuted + 8 * parts;
    const __m512i partMask = _mm512_set1_epi8(parts - 1);
    std::ptrdiff_t i = 0;
    for (; i + block <= count; i += block) {
        __m512i value[vectors]; // the place within a part, until its entry takes it over
        __m512i part[vectors];
        for (int v = 0; v < vectors; ++v) {
            const WordVector first{_mm512_loadu_si512(src + i + 64 * v)};
            const WordVector second{_mm512_loadu_si512(src + i + 64 * v + 32)};
            value[v] = lowBytes(first, second).raw;
            part[v] = _mm512_and_si512(
                lowBytes(hn::ShiftRight<7>(first), hn::ShiftRight<7>(second)).raw, partMask);
        }
        for (int p = 0; p < parts; ++p) {
            const __m512i low = _mm512_loadu_si512(table + 128 * p);
            const __m512i high = _mm512_loadu_si512(table + 128 * p + 64);
            const __m512i current = _mm512_set1_epi8(static_cast<char>(p));
            for (int v = 0; v < vectors; ++v) {
                const __mmask64 isHere = _mm512_cmpeq_epi8_mask(part[v], current);
                value[v] = _mm512_mask2_permutex2var_epi8(low, value[v], isHere, high);
            }
            const std::ptrdiff_t beside = i + permuted + 8 * p;
            for (int k = 0; k < 8; ++k)
                dst[beside + k] = table[src[beside + k] & (128 * parts - 1)];
        }
        for (int v = 0; v < vectors; ++v)
            _mm512_storeu_si512(dst + i + 64 * v, value[v]);
    }
    return i;
}

// An entry is that of its block and one more for each rise up to it.
std::ptrdiff_t mapGentle(const unsigned short* src, std::ptrdiff_t count, const GentleTable& table,
                         unsigned char* dst)
{
    const ByteTable firsts(table.firsts);
    const ByteTable rise0(table.rises[0]);
    const ByteTable rise1(table.rises[1]);
    const ByteTable rise2(table.rises[2]);
    const __m512i placeMask = _mm512_set1_epi8(GentleTable::blockSize - 1);
    const __m512i one = _mm512_set1_epi8(1);
    std::ptrdiff_t i = 0;
    for (; i + 64 <= count; i += 64) {
        const WordVector first{_mm512_loadu_si512(src + i)};
        const WordVector second{_mm512_loadu_si512(src + i + 32)};
        const __m512i place = _mm512_and_si512(lowBytes(first, second).raw, placeMask);
        const __m512i block = lowBytes(hn::ShiftRight<4>(first), hn::ShiftRight<4>(second)).raw;
        __m512i value = firsts[block];
        for (const ByteTable* const rise : {&rise0, &rise1, &rise2})
            value = _mm512_mask_add_epi8(value, _mm512_cmpge_epu8_mask(place, (*rise)[block]),
                                         value, one);
        _mm512_storeu_si512(dst + i, value);
    }
    return i;
}

#else

// Sixteen entries at a time: each part holds the difference to the part before, and an index
// counts down by 16 from part to part until it turns negative and adds nothing any more.
ByteVector lookUpHalf(const ByteVector* differences, ByteVector index)
{
    const ByteVector valid = hn::Set(Bytes(), 0x8F);
    const ByteVector sixteen = hn::Set(Bytes(), 16);
    ByteVector value = hn::Zero(Bytes());
    for (int part = 0; part < 8; ++part) {
        value = hn::Xor(value, hn::TableLookupBytesOr0(differences[part], hn::And(index, valid)));
        index = hn::Sub(index, sixteen);
    }
    return value;
}

std::ptrdiff_t map8(const unsigned char* src, std::ptrdiff_t count, const unsigned char* table,
                    unsigned char* dst)
{
    const Bytes bytes;
    const std::ptrdiff_t lanes = hn::Lanes(bytes);
    ByteVector differences[16];
    for (int part = 0; part < 16; ++part) {
        differences[part] = hn::LoadDup128(bytes, table + 16 * part);
        if (part % 8 != 0)
            differences[part] =
                hn::Xor(differences[part], hn::LoadDup128(bytes, table + 16 * (part - 1)));
    }
    const ByteVector half = hn::Set(bytes, 128);
    std::ptrdiff_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const ByteVector index = hn::LoadU(bytes, src + i);
        const ByteVector low = lookUpHalf(differences, index);
        const ByteVector high = lookUpHalf(differences + 8, hn::Xor(index, half));
        hn::StoreU(hn::IfThenElse(hn::TestBit(index, half), high, low), bytes, dst + i);
    }
    return i;
}

#endif

#endif // HWY_TARGET

#if HWY_TARGET != HWY_AVX3_DL

// Loads are the limit; eight samples at a time need two loads and one store beside the eight
// of the table.
template <int parts>
std::ptrdiff_t map16(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                     unsigned char* dst)
{
    constexpr std::uint64_t mask = 128 * parts - 1;
    std::ptrdiff_t i = 0;
    for (; i + 8 <= count; i += 8) {
        unsigned char values[8];
        for (int half = 0; half < 2; ++half) {
            std::uint64_t four;
            std::memcpy(&four, src + i + 4 * half, sizeof(four));
            for (int k = 0; k < 4; ++k)
                values[4 * half + k] = table[(four >> (16 * k)) & mask];
        }
        std::memcpy(dst + i, values, sizeof(values));
    }
    return i;
}

#endif

std::ptrdiff_t map10(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                     unsigned char* dst)
{
    return map16<8>(src, count, table, dst);
}

std::ptrdiff_t map12(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                     unsigned char* dst)
{
#if HWY_TARGET == HWY_AVX3_DL
    GentleTable gentle;
    if (count >= worthDescribing && gentle.describe(table))
        return mapGentle(src, count, gentle, dst);
#endif
    return map16<32>(src, count, table, dst);
}

} // namespace samples::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace samples
{
HWY_EXPORT(shift);
HWY_EXPORT(map8);
HWY_EXPORT(map10);
HWY_EXPORT(map12);

void mapRest(const unsigned short* src, std::ptrdiff_t from, std::ptrdiff_t count,
             const unsigned char* table, unsigned mask, unsigned char* dst)
{
    for (std::ptrdiff_t i = from; i < count; ++i)
        dst[i] = table[src[i] & mask];
}
} // namespace samples

// The kernels return how many samples they have done, whole vectors only.

void mapThroughTable8(const unsigned char* src, std::ptrdiff_t count, const unsigned char* table,
                      unsigned char* dst)
{
    using namespace samples;
    for (std::ptrdiff_t i = HWY_DYNAMIC_DISPATCH(map8)(src, count, table, dst); i < count; ++i)
        dst[i] = table[src[i]];
}

void mapThroughTable10(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                       unsigned char* dst)
{
    using namespace samples;
    mapRest(src, HWY_DYNAMIC_DISPATCH(map10)(src, count, table, dst), count, table, 0x3FF, dst);
}

void mapThroughTable12(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                       unsigned char* dst)
{
    using namespace samples;
    mapRest(src, HWY_DYNAMIC_DISPATCH(map12)(src, count, table, dst), count, table, 0xFFF, dst);
}

void shiftTo8Bits(const void* src, std::ptrdiff_t count, int shift, unsigned char* dst)
{
    using namespace samples;
    const unsigned char* const bytes = static_cast<const unsigned char*>(src);
    if (shift > 15) {
        std::fill_n(dst, std::max<std::ptrdiff_t>(count, 0), static_cast<unsigned char>(0));
        return;
    }
    for (std::ptrdiff_t i = HWY_DYNAMIC_DISPATCH(shift)(bytes, count, shift, dst); i < count; ++i) {
        std::uint16_t sample;
        std::memcpy(&sample, bytes + 2 * i, sizeof(sample));
        dst[i] = static_cast<unsigned char>(sample >> shift);
    }
}
#endif
