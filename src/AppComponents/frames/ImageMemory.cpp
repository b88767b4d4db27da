#include <AppComponents/frames/ImageMemory.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

namespace
{

/// Keeps the blocks of released images, all of one size: that of the last image made.
class BlockPool
{
public:
    using Block = std::unique_ptr<unsigned char[]>;

    Block take(std::size_t bytes)
    {
        std::vector<Block> outgrown; // freed outside the lock
        const std::lock_guard<std::mutex> lock(mutex);
        if (bytes != blockBytes) {
            outgrown.swap(blocks);
            blocks.reserve(mostBlocks);
            blockBytes = bytes;
        }
        if (blocks.empty())
            return Block(new (std::nothrow) unsigned char[bytes]);
        Block block = std::move(blocks.back());
        blocks.pop_back();
        return block;
    }

    void giveBack(Block block, std::size_t bytes)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (bytes == blockBytes && blocks.size() < mostBlocks)
            blocks.push_back(std::move(block));
    }

private:
    // One picture being made, one on its way to the display, one shown, one spare.
    static constexpr std::size_t mostBlocks = 4;

    std::mutex mutex;
    std::vector<Block> blocks;
    std::size_t blockBytes = 0;
};

/// Never destroyed: images and the threads that make them may still be about after main().
BlockPool& pool()
{
    static BlockPool* const immortal = std::make_unique<BlockPool>().release();
    return *immortal;
}

/// What an image holds of its memory.
struct Loan {
    BlockPool::Block block;
    std::size_t bytes;
};

void endLoan(void* info)
{
    const std::unique_ptr<Loan> loan(static_cast<Loan*>(info));
    pool().giveBack(std::move(loan->block), loan->bytes);
}

} // namespace

QImage imageFromPool(int width, int height, QImage::Format format)
{
    const long long bytesPerLine =
        (format == QImage::Format_Indexed8 ? width + 3LL : 3LL * width + 3) & ~3LL;
    if (width <= 0 || height <= 0 || bytesPerLine > INT_MAX / height)
        return {};
    const std::size_t bytes = static_cast<std::size_t>(bytesPerLine * height);
    auto loan = std::make_unique<Loan>(Loan{pool().take(bytes), bytes});
    if (!loan->block)
        return {};
    QImage image(loan->block.get(), width, height, static_cast<int>(bytesPerLine), format, endLoan,
                 loan.get());
    if (!image.isNull()) // else the size was too large for it, and it does not end the loan
        static_cast<void>(loan.release());
    return image;
}
