#pragma once

#include <AppComponents/AppComponentsExport.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

/// A ring frame buffer of more than RingFrameBuffer::maxFrames frames was asked for.
class APPCOMPONENTS_EXPORT MaxBufferLengthException : public std::runtime_error
{
public:
    explicit MaxBufferLengthException(const std::string& message);
    MaxBufferLengthException(const MaxBufferLengthException&) = default;
    MaxBufferLengthException(MaxBufferLengthException&&) = default;
    MaxBufferLengthException& operator=(const MaxBufferLengthException&) = default;
    MaxBufferLengthException& operator=(MaxBufferLengthException&&) = default;
    ~MaxBufferLengthException() override;
};

/// Samples of more than 16 bits were asked for.
class APPCOMPONENTS_EXPORT MaxColorDepthException : public std::runtime_error
{
public:
    explicit MaxColorDepthException(const std::string& message);
    MaxColorDepthException(const MaxColorDepthException&) = default;
    MaxColorDepthException(MaxColorDepthException&&) = default;
    MaxColorDepthException& operator=(const MaxColorDepthException&) = default;
    MaxColorDepthException& operator=(MaxColorDepthException&&) = default;
    ~MaxColorDepthException() override;
};

/// Keeps the last frames of a stream and delivers with each new one the mean, sample by sample,
/// of all frames held: a running average that takes the noise out of a live picture.
///
/// Works on plain sample arrays of one geometry; remembers the decimation and the mirror flags
/// of its stream without applying them. Copies hold frames of their own.
/// Not synchronised: one thread at a time per object.
class APPCOMPONENTS_EXPORT RingFrameBuffer
{
public:
    static constexpr int maxFrames = 64; ///< the largest capacity

    /// A buffer that must be Reset() before use; until then appendFrame() does nothing.
    RingFrameBuffer();

    /// The same as Reset() on an empty buffer; note the other order of the arguments.
    RingFrameBuffer(int decimation, int width, int capacity, int bitsPerPixel, bool mirrorV,
                    bool mirrorH, int height);

    RingFrameBuffer(const RingFrameBuffer& other);
    RingFrameBuffer& operator=(const RingFrameBuffer& other);
    virtual ~RingFrameBuffer();

    /// Forgets all frames and prepares for a stream.
    /// \param capacity number of frames to average over, 1 ... maxFrames.
    /// \param bitsPerPixel bits per sample, 1 ... 16; above 8 a sample is a little-endian word.
    /// \throws MaxBufferLengthException, MaxColorDepthException (both with an empty text) or
    ///   std::bad_alloc. The buffer then holds nothing and must be Reset() again before use.
    void Reset(int capacity, int bitsPerPixel, int width, int height, int decimation, bool mirrorH,
               bool mirrorV);

    /// Adds a frame, in place of the oldest one when the buffer is full, and writes the
    /// truncated mean of the frames held.
    /// \param frame,average packed pictures of the geometry given to Reset(); they are the same
    ///   array or do not overlap. A sample of 16 bits need not be aligned.
    void appendFrame(unsigned char* const frame, unsigned char* average);

    int getCapacity() const { return capacity; }
    int geBitsPerPixel() const { return bitsPerPixel; }
    int getWidth() const { return width; }
    int getHeight() const { return height; }
    int getDecimation() const { return decimation; }
    bool getMirrorH() const { return mirrorH; }
    bool getMirrorV() const { return mirrorV; }

private:
    void clear();
    std::size_t samplesPerFrame() const;

    std::unique_ptr<unsigned char[]> storage; // capacity slots of frameSize bytes
    std::unique_ptr<std::int32_t[]> sums;     // one running sum per sample position
    std::int32_t capacity = -1;
    std::int32_t count = -1;  // frames held
    std::int32_t oldest = -1; // slot of the oldest frame held
    std::int32_t newest = -1; // slot of the newest frame held
    std::uint32_t frameSize = 0;
    std::int32_t bitsPerPixel = 0;
    std::int32_t height = -1;
    std::int32_t width = -1;
    bool mirrorV = false;
    bool mirrorH = false;
    std::int32_t decimation = 0;
};
