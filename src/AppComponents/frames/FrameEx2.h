#pragma once

#include <AppComponents/AppComponentsExport.h>

#include <QImage>
#include <QMetaType>
#include <QSharedPointer>
#include <QVector>

#include <cstdint>

/// Geometry and pixel format of a frame. Byte-packed: 26 bytes without padding.
///
/// The mirror flags also fix the phase of the Bayer mosaic in the raw data: unmirrored data
/// begins with the 2x2 cell G B / R G, `mirrorH` alone gives B G / G R, `mirrorV` alone
/// R G / G B, both give G R / B G.
struct __attribute__((packed)) _FrameParams {
    std::int32_t posX = 0;   ///< first column of the frame's area, in sensor pixels
    std::int32_t posY = 0;   ///< first row of the frame's area, in sensor pixels
    std::int32_t width = 0;  ///< width of the area, in sensor pixels (before decimation)
    std::int32_t height = 0; ///< height of the area, in sensor pixels (before decimation)
    /// Sub-sampling factor of which only the magnitude counts; never 0 in a frame with a picture.
    std::int32_t decimation = 0;
    /// 8: one sample per pixel; 24: three bytes per pixel in the order of QImage::Format_RGB888.
    /// Any value above 8 counts as three samples per pixel wherever sizes are computed.
    std::int32_t bitsPerPixel = 0;
    bool mirrorV = false; ///< read out mirrored top to bottom
    bool mirrorH = false; ///< read out mirrored left to right
};

/// The name of _FrameParams in the signatures of signals and slots.
typedef _FrameParams TFrameParams;

/// The record in which a camera picture travels: geometry, pixel data and the chain of frames
/// derived from it by processing.
///
/// A frame owns its buffer and, through `processed`, the next frame of its chain. Copies show
/// the same `processed` frame; it lives until the last record that shows it is destroyed or
/// assigned over. Set `processed` through adaptProcessedFrame() or by copying a record; to hand
/// over a frame by hand, create it with new and store it in one record only.
///
/// Not synchronised: one thread at a time per chain.
struct APPCOMPONENTS_EXPORT __attribute__((packed, aligned(8))) FrameEx2 {
    /// An empty frame without a buffer.
    FrameEx2();

    /// A frame with a buffer for the given geometry, contents undefined, not valid.
    /// \throws std::bad_alloc if the buffer cannot be had.
    FrameEx2(_FrameParams frameParams, unsigned char bitDepth);

    /// Copies the record with a buffer of its own.
    FrameEx2(const FrameEx2& other);

    /// Copies every field; the own buffer is kept, grown if it is smaller than the other's, and
    /// receives the other's bytes. The chain shown before is released unless another record
    /// shows it. Assigned to a frame of its own derived chain, a record passes on everything
    /// but the link, which would lead the chain back into itself.
    FrameEx2& operator=(const FrameEx2& other);

    /// Releases the buffer and the hold on the derived chain.
    virtual ~FrameEx2();

    /// Gives the frame a new geometry and depth, zeroes `frameTag` and `imageOffset` and grows
    /// the buffer if needed. Leaves `processed` and the state flags alone.
    /// \param frameParams `decimation` must not be 0.
    /// \throws std::bad_alloc if the buffer cannot be had or would exceed 2 GiB; the frame then
    ///   has no buffer.
    void InitFrame(_FrameParams& frameParams, unsigned char bitDepth);

    /// Makes the next frame of the chain fit a new result, creating it on first need.
    /// \return the next frame, not valid (as are all frames behind it); owned by this frame.
    FrameEx2* adaptProcessedFrame(_FrameParams frameParams, unsigned char bitDepth);

    /// \return the last frame that is reached by following links into valid frames only; this
    ///   frame itself when \p followChain is false or the next frame is not valid.
    FrameEx2* getLasFrameInChain(bool followChain);

    /// Marks this frame and all frames derived from it as not valid (`frameTag` -1) while
    /// keeping them and their buffers for the next picture.
    void invalidateFrame();

    /// Ensures an own buffer of at least \p size bytes, contents undefined; it never shrinks.
    /// One spare byte lies behind the buffer, uncounted by `buffSize`.
    /// \throws std::bad_alloc if the memory cannot be had; the frame then has no buffer.
    void allocate(int size);

    /// Mirrors the picture in place.
    void flip(bool flipH, bool flipV);

    /// Keeps the first byte of each three-byte pixel and makes the picture one of 8 bits per
    /// pixel. Does nothing to a picture of 8 bits per pixel or of a raw depth above 8.
    void colorToMono1();

    /// \return a new image with a copy of the picture: indexed with the grey palette for 8 bits
    ///   per pixel, RGB888 otherwise. The packed rows are copied as one block, so that pictures
    ///   whose row length is no multiple of 4 bytes come out sheared.
    QSharedPointer<QImage> getImage();

    /// \return 256 opaque greys from black to white. The first call must be made before images
    ///   are requested from several threads at once.
    static QVector<unsigned int> getStandardColorTable();

    /// \return bytes of the picture: `imgWidth` x `imgHeight`, doubled for a raw depth above 8,
    ///   tripled for more than 8 bits per pixel.
    unsigned long frameSizeInByte() const;

    int getBuffSize() const { return buffSize; }
    unsigned char* getBuffer() { return buffer; }
    const unsigned char* getBuffer() const { return buffer; }

    int getImageBuffSize() const { return buffSize - imageOffset; }
    unsigned char* getImageBuffer() { return buffer + imageOffset; }
    const unsigned char* getImageBuffer() const { return buffer + imageOffset; }

    bool isBusy() const { return busy; }
    /// Sets or clears the hand-over marker.
    /// \throws const char* "FrameEx2::setIsBusy -> Frame already busy!" when a busy frame is to
    ///   be marked again.
    void setIsBusy(bool on);

    _FrameParams params;
    std::uint8_t reserved[72]; ///< carried along by copies, without a meaning here
    std::uint8_t rawBitDepth;  ///< bits per sample; above 8 each sample is a little-endian word
    std::int32_t imgWidth;     ///< columns of the stored picture
    std::int32_t imgHeight;    ///< rows of the stored picture
    std::int32_t frameTag;    ///< the application's number for the frame; derived frames inherit it
    std::int32_t imageOffset; ///< byte offset of the picture inside `buffer`
    FrameEx2* processed;      ///< the next frame of the chain, or null
    std::uint8_t processing[32]; ///< zeroed by invalidateFrame(), without a meaning here
    bool isValid;                ///< holds a finished result
    bool isFilled;               ///< set and cleared together with `isValid` by producers
    bool isReserved;             ///< cleared by invalidateFrame(), without a meaning here
    bool busy;                   ///< set through setIsBusy()
    std::int32_t buffSize;       ///< bytes in `buffer`; may exceed what the geometry needs
    bool ownsBuffer;             ///< `buffer` is released by this frame
    unsigned char* buffer;       ///< the pixel data

    static QVector<unsigned int> standardColorTable; ///< empty until first asked for

private:
    void clearFields();
    void setBuffer(unsigned char* data, int size);
    void clear();
    bool leadsTo(const FrameEx2* frame) const;
    static void release(FrameEx2* frame);

    // The number of records whose `processed` shows this frame; whoever creates a frame for a
    // chain is the first. Changed atomically, because copies of one record may end on different
    // threads; no std::atomic, because only plain fields can be packed.
    alignas(4) std::int32_t holders = 1;
};

Q_DECLARE_METATYPE(_FrameParams)
