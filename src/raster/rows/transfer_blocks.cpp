// See transfer_blocks.h.
#include "raster/rows/transfer_blocks.h"

#include <algorithm>
#include <cstring>

namespace qm {

namespace {

constexpr std::size_t kReadStep = std::size_t{1} << 16;
constexpr std::int64_t kEntryBytes = 3;  // command byte and 16-bit count

// Commands of an adaptive block beyond the row methods 0 to 3.
enum AdaptiveCommand : int { kEmptyRows = 4, kRepeatRows = 5 };

std::int32_t Advance(std::int32_t row, std::int64_t rows) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(row + rows, INT32_MAX));
}

ByteSpan SpanOf(const std::vector<std::uint8_t>& bytes) { return {bytes.data(), bytes.size()}; }

}  // namespace

std::size_t SpanSource::Read(std::uint8_t* to, std::size_t size) {
    const std::size_t there = std::min(size, Left());
    if (there != 0) std::memcpy(to, span_.data + at_, there);
    at_ += there;
    return there;
}

bool ReadCounted(ByteSource& source, std::int64_t count, std::vector<std::uint8_t>& buffer) {
    const auto wanted = static_cast<std::size_t>(std::max<std::int64_t>(count, 0));
    std::size_t filled = 0;
    while (filled < wanted) {
        // A step is never smaller than what is there already, so the growth stays cheap.
        const std::size_t step = std::min(wanted - filled, std::max(kReadStep, filled));
        buffer.resize(filled + step);
        const std::size_t got = source.Read(buffer.data() + filled, step);
        filled += got;
        if (got < step) break;
    }
    buffer.resize(filled);
    return filled == wanted;
}

bool SkipCounted(ByteSource& source, std::int64_t count) {
    std::uint8_t dropped[4096];
    while (count > 0) {
        const auto step = std::min(static_cast<std::size_t>(count), sizeof(dropped));
        if (source.Read(dropped, step) < step) return false;
        count -= static_cast<std::int64_t>(step);
    }
    return true;
}

std::int32_t AddAdaptiveBlock(ByteSource& source, std::int64_t blockBytes, CRTLRaster& raster,
                              std::int32_t row, RowShare share) {
    std::vector<std::uint8_t> data;
    std::int64_t left = blockBytes;
    while (left >= kEntryBytes) {
        std::uint8_t entry[kEntryBytes];
        if (source.Read(entry, sizeof(entry)) < sizeof(entry)) return row;
        left -= kEntryBytes;
        const int command = entry[0];
        const std::int32_t count = (entry[1] << 8) | entry[2];
        if (command > kRepeatRows) break;
        if (command == kEmptyRows) {
            raster.AddEmptyRows(row, count);
            row = Advance(row, count);
        } else if (command == kRepeatRows) {
            raster.AddSeedCopies(row, count);
            row = Advance(row, count);
        } else {
            ReadCounted(source, std::min<std::int64_t>(count, left), data);
            left -= static_cast<std::int64_t>(data.size());
            // A delta row of one byte stores a copy of the seed: its command finds no data.
            raster.AddRow(row, SpanOf(data), command, share.offset, share.count, true);
            row = Advance(row, 1);
        }
    }
    SkipCounted(source, left);
    return row;
}

// Reads `count` rows of `rowBytes` bytes to row `row` on; the last one that comes may be cut short.
// Returns the row behind them.
static std::int32_t AddPlainRows(ByteSource& source, std::int64_t count, std::int64_t rowBytes,
                                 CRTLRaster& raster, std::int32_t row, RowShare share) {
    // Bytes behind the stored row are never looked at: they are skipped, not buffered.
    const std::int64_t kept = std::min(rowBytes, static_cast<std::int64_t>(raster.RowBytes()));
    std::vector<std::uint8_t> data;
    for (bool more = true; more && count > 0; --count) {
        more = ReadCounted(source, kept, data) && SkipCounted(source, rowBytes - kept);
        if (data.empty() && !more) break;
        raster.AddRow(row, SpanOf(data), 0, share.offset, share.count, true);
        row = Advance(row, 1);
    }
    return row;
}

PlainBlockResult AddPlainBlock(ByteSource& source, std::int64_t blockBytes, CRTLRaster& raster,
                               std::int32_t row, RowShare share) {
    PlainBlockResult result;
    result.nextRow = row;
    std::uint8_t head[4];
    if (blockBytes < 4) {
        SkipCounted(source, blockBytes);
        return result;
    }
    if (source.Read(head, sizeof(head)) < sizeof(head)) return result;
    const std::int64_t left = blockBytes - 4;
    std::int64_t width = 0;
    for (const std::uint8_t byte : head) width = width * 256 + byte;
    const std::int64_t rowBytes = (width + 7) / 8;
    if (rowBytes == 0) {
        SkipCounted(source, left);
        return result;
    }
    result.valid = true;
    result.rows = Advance(0, left / rowBytes);
    result.nextRow = AddPlainRows(source, left / rowBytes, rowBytes, raster, row, share);
    SkipCounted(source, left % rowBytes);
    return result;
}

}  // namespace qm
