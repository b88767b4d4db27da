#include <AppComponents/frames/FrameEx2.h>

#include <AppComponents/frames/ImageMemory.h>
#include <AppComponents/frames/PictureFlip.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

static_assert(offsetof(_FrameParams, mirrorV) == 24 && sizeof(_FrameParams) == 26,
              "the parameter block holds its fields and nothing else");
static_assert(sizeof(FrameEx2) == 2 * sizeof(void*) + sizeof(_FrameParams) + 72 + 1 + 4 * 4 + 32 +
                                      4 + 4 + 1 + sizeof(void*) + sizeof(std::int32_t),
              "the frame record is packed");

QVector<unsigned int> FrameEx2::standardColorTable;

namespace
{

// Rows of a picture begin on a cache line whenever their length allows it.
constexpr std::align_val_t bufferAlignment{64};

// The mosaic-to-grey conversion touches one byte behind the picture.
constexpr std::size_t spareBytes = 1;

int decimated(int extent, int decimation)
{
    return static_cast<int>(extent / std::llabs(decimation));
}

} // namespace

FrameEx2::FrameEx2()
{
    clearFields();
}

FrameEx2::FrameEx2(_FrameParams frameParams, unsigned char bitDepth)
{
    clearFields();
    InitFrame(frameParams, bitDepth);
    invalidateFrame();
}

FrameEx2::FrameEx2(const FrameEx2& other)
{
    clearFields();
    *this = other;
}

FrameEx2& FrameEx2::operator=(const FrameEx2& other)
{
    if (this == &other)
        return *this;

    params = other.params;
    std::memcpy(reserved, other.reserved, sizeof(reserved));
    rawBitDepth = other.rawBitDepth;
    imgWidth = other.imgWidth;
    imgHeight = other.imgHeight;
    frameTag = other.frameTag;
    imageOffset = other.imageOffset;
    std::memcpy(processing, other.processing, sizeof(processing));
    isValid = other.isValid;
    isFilled = other.isFilled;
    isReserved = other.isReserved;
    busy = other.busy;

    if (buffSize < other.buffSize)
        allocate(other.buffSize);
    if (other.buffSize > 0)
        std::memcpy(buffer, other.buffer, static_cast<std::size_t>(other.buffSize));

    if (other.leadsTo(this))
        return *this;
    if (other.processed)
        __atomic_fetch_add(&other.processed->holders, 1, __ATOMIC_RELAXED);
    // The old chain goes last: the other record may be a part of it.
    FrameEx2* const old = processed;
    processed = other.processed;
    release(old);
    return *this;
}

FrameEx2::~FrameEx2()
{
    clear();
    release(processed);
}

void FrameEx2::clearFields()
{
    std::memset(reserved, 0, sizeof(reserved));
    rawBitDepth = 0;
    imgWidth = 0;
    imgHeight = 0;
    frameTag = 0;
    imageOffset = 0;
    processed = nullptr;
    std::memset(processing, 0, sizeof(processing));
    isValid = false;
    isFilled = false;
    isReserved = false;
    busy = false;
    buffSize = 0;
    ownsBuffer = false;
    buffer = nullptr;
}

void FrameEx2::InitFrame(_FrameParams& frameParams, unsigned char bitDepth)
{
    params = frameParams;
    rawBitDepth = bitDepth;
    frameTag = 0;
    imageOffset = 0;
    imgWidth = decimated(params.width, params.decimation);
    imgHeight = decimated(params.height, params.decimation);

    const unsigned long size = frameSizeInByte();
    if (size > INT_MAX) {
        clear();
        throw std::bad_array_new_length();
    }
    allocate(static_cast<int>(size));
}

FrameEx2* FrameEx2::adaptProcessedFrame(_FrameParams frameParams, unsigned char bitDepth)
{
    if (!processed) {
        processed = new FrameEx2(frameParams, bitDepth);
        return processed;
    }

    _FrameParams& current = processed->params;
    if (current.width == frameParams.width && current.height == frameParams.height &&
        current.decimation == frameParams.decimation &&
        current.bitsPerPixel == frameParams.bitsPerPixel && processed->rawBitDepth == bitDepth) {
        current.posX = frameParams.posX;
        current.posY = frameParams.posY;
        current.mirrorV = frameParams.mirrorV;
        current.mirrorH = frameParams.mirrorH;
    } else {
        processed->InitFrame(frameParams, bitDepth);
    }
    processed->invalidateFrame();
    return processed;
}

FrameEx2* FrameEx2::getLasFrameInChain(bool followChain)
{
    FrameEx2* last = this;
    while (followChain && last->processed && last->processed->isValid)
        last = last->processed;
    return last;
}

void FrameEx2::invalidateFrame()
{
    for (FrameEx2* frame = this; frame; frame = frame->processed) {
        frame->frameTag = -1;
        frame->isValid = false;
        frame->isFilled = false;
        frame->isReserved = false;
        std::memset(frame->processing, 0, sizeof(frame->processing));
    }
}

void FrameEx2::allocate(int size)
{
    if (ownsBuffer && buffSize >= size)
        return;
    clear();
    if (size == 0)
        return;
    if (size < 0)
        throw std::bad_array_new_length();
    const std::size_t bytes = static_cast<std::size_t>(size);
    buffer = static_cast<unsigned char*>(::operator new[](bytes + spareBytes, bufferAlignment));
    buffer[bytes] = 0;
    buffSize = size;
    ownsBuffer = true;
}

void FrameEx2::setBuffer(unsigned char* data, int size)
{
    clear();
    buffer = data;
    buffSize = size;
    imageOffset = 0;
}

void FrameEx2::clear()
{
    if (ownsBuffer)
        ::operator delete[](buffer, bufferAlignment);
    buffer = nullptr;
    buffSize = 0;
    ownsBuffer = false;
}

bool FrameEx2::leadsTo(const FrameEx2* frame) const
{
    const FrameEx2* link = processed;
    while (link && link != frame)
        link = link->processed;
    return link != nullptr;
}

// A loop rather than a recursion, so that no chain is too long to be released.
void FrameEx2::release(FrameEx2* frame)
{
    while (frame && __atomic_fetch_sub(&frame->holders, 1, __ATOMIC_ACQ_REL) == 1) {
        FrameEx2* const next = frame->processed;
        frame->processed = nullptr;
        delete frame;
        frame = next;
    }
}

void FrameEx2::flip(bool flipH, bool flipV)
{
    const int bytesPerPixel = (rawBitDepth > 8 ? 2 : 1) * (params.bitsPerPixel / 8);
    const long long pictureBytes = 1LL * imgWidth * imgHeight * bytesPerPixel;
    if (imgWidth <= 0 || pictureBytes <= 0 || pictureBytes > getImageBuffSize())
        return;
    flipPicture(getImageBuffer(), imgWidth, imgHeight, bytesPerPixel, flipH, flipV);
}

void FrameEx2::colorToMono1()
{
    if (params.bitsPerPixel == 8 || rawBitDepth > 8)
        return;
    const long long pixels = std::min(1LL * imgWidth * imgHeight, 1LL * (buffSize / 3));
    if (imgWidth > 0 && pixels > 0)
        keepFirstOfThree(buffer, static_cast<std::size_t>(pixels));
    params.bitsPerPixel = 8;
}

QSharedPointer<QImage> FrameEx2::getImage()
{
    const bool grey = params.bitsPerPixel == 8;
    QSharedPointer<QImage> image(new QImage(imageFromPool(
        imgWidth, imgHeight, grey ? QImage::Format_Indexed8 : QImage::Format_RGB888)));
    if (unsigned char* const bits = image->bits()) {
        const long long pictureBytes = 1LL * imgWidth * imgHeight * (grey ? 1 : 3);
        const std::size_t bytes =
            static_cast<std::size_t>(std::min(pictureBytes, 1LL * getImageBuffSize()));
        if (bytes > 0)
            std::memcpy(bits, getImageBuffer(), bytes);
        // The room left over by the row alignment must not show what the memory held before.
        std::memset(bits + bytes, 0, static_cast<std::size_t>(image->sizeInBytes()) - bytes);
    }
    if (grey)
        image->setColorTable(getStandardColorTable());
    return image;
}

QVector<unsigned int> FrameEx2::getStandardColorTable()
{
    if (standardColorTable.isEmpty()) {
        standardColorTable.reserve(256);
        for (unsigned int level = 0; level < 256; ++level)
            standardColorTable.append(0xFF000000U + level * 0x010101U);
    }
    return standardColorTable;
}

unsigned long FrameEx2::frameSizeInByte() const
{
    unsigned long size =
        static_cast<unsigned long>(imgWidth) * static_cast<unsigned long>(imgHeight);
    if (rawBitDepth > 8)
        size *= 2;
    if (params.bitsPerPixel > 8)
        size *= 3;
    return size;
}

void FrameEx2::setIsBusy(bool on)
{
    if (on && busy)
        throw "FrameEx2::setIsBusy -> Frame already busy!";
    busy = on;
}
