// The store of a picture's rows; see bitmap_rows.h.
#include "raster/rows/bitmap_rows.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace qm {

namespace {

constexpr std::int64_t kPictureLimit = std::int64_t{1} << 31;
constexpr std::int64_t kBlockBytes = std::int64_t{1} << 20;
// Turning by a quarter writes each row of a block as one column of the bitmap; whole bytes and
// cache lines of it are written at once when blocks hold multiples of this many rows.
constexpr std::int64_t kBlockRowMultiple = 64;
// Rows so long that even eight of them are a large block get blocks of their own.
constexpr std::int64_t kLongRow = std::int64_t{1} << 25;

std::int64_t RowsPerBlock(std::int64_t stride) {
    if (stride <= 0 || stride > kLongRow) return 1;
    const std::int64_t rows = kBlockBytes / stride;
    if (rows >= kBlockRowMultiple) return rows / kBlockRowMultiple * kBlockRowMultiple;
    return std::max<std::int64_t>(8, rows / 8 * 8);
}

}  // namespace

RowStore::RowStore(std::int64_t stride, std::int64_t room)
    : rowLimit_(stride > 0 ? std::min(room, kPictureLimit) / stride : 0),
      blockRows_(RowsPerBlock(stride)) {
    if (rowLimit_ > 0) stride_ = static_cast<std::size_t>(stride);
}

std::uint8_t* RowStore::TouchBlock(std::size_t index) {
    if (index >= blocks_.size()) blocks_.resize(index + 1);
    Block& block = blocks_[index];
    if (!block) {
        // calloc, because large blocks come as untouched pages: rows not written cost no memory.
        const auto rows = static_cast<std::size_t>(blockRows_);
        block.reset(static_cast<std::uint8_t*>(std::calloc(rows, stride_)));
        if (!block) throw std::bad_alloc();
    }
    return block.get();
}

std::uint8_t* RowStore::Touch(std::int64_t row) {
    if (row < 0 || row >= rowLimit_) return nullptr;
    std::uint8_t* block = TouchBlock(static_cast<std::size_t>(row / blockRows_));
    return block + static_cast<std::size_t>(row % blockRows_) * stride_;
}

const std::uint8_t* RowStore::Find(std::int64_t row) const {
    if (row < 0 || row >= rowLimit_) return nullptr;
    const auto index = static_cast<std::size_t>(row / blockRows_);
    if (index >= blocks_.size() || !blocks_[index]) return nullptr;
    return blocks_[index].get() + static_cast<std::size_t>(row % blockRows_) * stride_;
}

void RowStore::Clear(std::int64_t first, std::int64_t count) {
    const auto held = static_cast<std::int64_t>(blocks_.size()) * blockRows_;
    const std::int64_t end = std::min(first + count, held);
    for (std::int64_t row = first; row < end;) {
        const std::int64_t next = std::min(end, (row / blockRows_ + 1) * blockRows_);
        Block& block = blocks_[static_cast<std::size_t>(row / blockRows_)];
        if (block) {
            std::memset(block.get() + static_cast<std::size_t>(row % blockRows_) * stride_, 0,
                        static_cast<std::size_t>(next - row) * stride_);
        }
        row = next;
    }
}

bool RowStore::Repeat(std::int64_t source, std::int64_t first, std::int64_t count) {
    const std::uint8_t* pattern = Find(source);
    if (pattern == nullptr) {
        Clear(first, count);
        return true;
    }
    const std::int64_t end = first + count;
    for (std::int64_t row = first; row < end;) {
        const std::int64_t next = std::min(end, (row / blockRows_ + 1) * blockRows_);
        std::uint8_t* to = Touch(row);
        if (to == nullptr) return false;
        // Doubling copies: one long move instead of very many short ones for narrow rows.
        const std::size_t total = static_cast<std::size_t>(next - row) * stride_;
        std::memmove(to, pattern, stride_);
        for (std::size_t done = stride_; done < total;) {
            const std::size_t step = std::min(done, total - done);
            std::memcpy(to + done, to, step);
            done += step;
        }
        row = next;
    }
    return true;
}

std::size_t RowStore::BandCount(std::int64_t rowCount) const {
    return static_cast<std::size_t>((rowCount + blockRows_ - 1) / blockRows_);
}

RowBand RowStore::Band(std::size_t index, std::int64_t rowCount) const {
    RowBand band;
    band.stride = stride_;
    band.first = static_cast<std::int64_t>(index) * blockRows_;
    band.count = std::min(blockRows_, rowCount - band.first);
    if (index < blocks_.size()) band.data = blocks_[index].get();
    return band;
}

void RowStore::ReleaseBand(std::size_t index) {
    if (index < blocks_.size()) blocks_[index].reset();
}

}  // namespace qm
