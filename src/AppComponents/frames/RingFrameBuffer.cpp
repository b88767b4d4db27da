#include <AppComponents/frames/RingFrameBuffer.h>

#include <AppComponents/frames/RunningMean.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace
{

// Frames of 16-bit samples are kept as they come: little-endian words.
constexpr int bitsPerByte = 8;

std::size_t extent(int value)
{
    return value > 0 ? static_cast<std::size_t>(value) : 0;
}

} // namespace

MaxBufferLengthException::MaxBufferLengthException(const std::string& message)
    : std::runtime_error(message)
{
}

MaxBufferLengthException::~MaxBufferLengthException() = default;

MaxColorDepthException::MaxColorDepthException(const std::string& message)
    : std::runtime_error(message)
{
}

MaxColorDepthException::~MaxColorDepthException() = default;

RingFrameBuffer::RingFrameBuffer() = default;

RingFrameBuffer::RingFrameBuffer(int streamDecimation, int frameWidth, int frames, int sampleBits,
                                 bool mirroredV, bool mirroredH, int frameHeight)
{
    Reset(frames, sampleBits, frameWidth, frameHeight, streamDecimation, mirroredH, mirroredV);
}

RingFrameBuffer::RingFrameBuffer(const RingFrameBuffer& other)
{
    *this = other;
}

RingFrameBuffer& RingFrameBuffer::operator=(const RingFrameBuffer& other)
{
    if (this == &other)
        return *this;

    std::unique_ptr<unsigned char[]> storageCopy;
    std::unique_ptr<std::int32_t[]> sumsCopy;
    if (other.storage) {
        const std::size_t held = extent(other.count) * other.frameSize;
        storageCopy.reset(new unsigned char[extent(other.capacity) * other.frameSize]);
        std::memcpy(storageCopy.get(), other.storage.get(), held);
        sumsCopy.reset(new std::int32_t[other.samplesPerFrame()]);
        std::copy_n(other.sums.get(), other.samplesPerFrame(), sumsCopy.get());
    }
    storage = std::move(storageCopy);
    sums = std::move(sumsCopy);
    capacity = other.capacity;
    count = other.count;
    oldest = other.oldest;
    newest = other.newest;
    frameSize = other.frameSize;
    bitsPerPixel = other.bitsPerPixel;
    height = other.height;
    width = other.width;
    mirrorV = other.mirrorV;
    mirrorH = other.mirrorH;
    decimation = other.decimation;
    return *this;
}

RingFrameBuffer::~RingFrameBuffer() = default;

void RingFrameBuffer::Reset(int frames, int sampleBits, int frameWidth, int frameHeight,
                            int streamDecimation, bool mirroredH, bool mirroredV)
{
    storage.reset();
    sums.reset();
    if (frames > maxFrames)
        throw MaxBufferLengthException("");
    if (sampleBits > 16)
        throw MaxColorDepthException("");

    height = frameHeight;
    width = frameWidth;
    bitsPerPixel = sampleBits;
    capacity = frames;
    count = 0;
    const std::size_t frameBytes = samplesPerFrame() * (bitsPerPixel > bitsPerByte ? 2 : 1);
    if (frameBytes > std::numeric_limits<std::uint32_t>::max())
        throw std::bad_array_new_length();
    frameSize = static_cast<std::uint32_t>(frameBytes);

    std::unique_ptr<unsigned char[]> slots(new unsigned char[extent(capacity) * frameBytes]);
    sums.reset(new std::int32_t[samplesPerFrame()]);
    storage = std::move(slots);
    mirrorH = mirroredH;
    mirrorV = mirroredV;
    decimation = streamDecimation;
    clear();
}

void RingFrameBuffer::clear()
{
    oldest = -1;
    newest = -1;
    count = 0;
    std::fill_n(sums.get(), samplesPerFrame(), 0);
}

std::size_t RingFrameBuffer::samplesPerFrame() const
{
    return extent(width) * extent(height);
}

void RingFrameBuffer::appendFrame(unsigned char* const frame, unsigned char* average)
{
    if (!storage || capacity < 1)
        return;

    if (oldest == -1)
        oldest = 0;
    const bool full = count == capacity;
    if (full) {
        oldest = (oldest + 1) % capacity;
        newest = (newest + 1) % capacity;
    } else {
        ++count;
        ++newest;
    }

    // A full ring stores the newest frame in the slot that the oldest one leaves, so that one
    // pass can take the old sample out of the sum, add the new one and store it.
    unsigned char* const slot = storage.get() + static_cast<std::size_t>(newest) * frameSize;
    const RunningMean mean{sums.get(), samplesPerFrame(), count, full};
    if (bitsPerPixel > bitsPerByte)
        mean.append16(frame, slot, average);
    else
        mean.append8(frame, slot, average);
}
