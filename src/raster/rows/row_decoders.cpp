// Methods 0 to 3; see row_decoders.h. Method 10 has a file of its own.
#include "raster/rows/row_decoders.h"

#include <algorithm>
#include <cstring>

namespace qm {

namespace {

void CopySeed(const std::uint8_t* seed, const RowTarget& target) {
    if (target.offset >= target.size) return;
    const std::size_t share = target.ShareEnd() - target.offset;
    std::uint8_t* to = target.row + target.offset;
    if (seed == nullptr) {
        std::memset(to, 0, share);
    } else if (seed != target.row) {
        std::memcpy(to, seed + target.offset, share);
    }
}

// The offset in a command of method 3, moving `from` behind the bytes that extend one of 31: up to
// and with the first one below 255.
std::size_t DeltaOffset(std::size_t command, const std::uint8_t*& from, const std::uint8_t* end) {
    std::size_t offset = command & 31;
    if (offset != 31) return offset;
    std::uint8_t more = 255;
    while (more == 255 && from != end) {
        more = *from++;
        offset += more;
    }
    return offset;
}

}  // namespace

void DecodeUnencoded(ByteSpan data, const RowTarget& target) {
    if (target.offset >= target.size || data.size == 0) return;
    const std::size_t size = std::min(data.size, target.size - target.offset);
    std::memcpy(target.row + target.offset, data.data, size);
}

void DecodeRunLength(ByteSpan data, const RowTarget& target) {
    std::size_t at = target.offset;
    for (std::size_t i = 0; i + 1 < data.size && at < target.size; i += 2) {
        const std::size_t run = std::size_t{data.data[i]} + 1;
        const std::size_t fits = std::min(run, target.size - at);
        std::memset(target.row + at, data.data[i + 1], fits);
        at += fits;
    }
}

void DecodePackBits(ByteSpan data, const RowTarget& target) {
    if (target.offset >= target.size) return;
    std::uint8_t* to = target.row + target.offset;
    std::uint8_t* const end = target.row + target.ShareEnd();
    const std::uint8_t* from = data.data;
    const std::uint8_t* const dataEnd = from + data.size;
    while (from != dataEnd && to != end) {
        const std::size_t control = *from++;
        const auto room = static_cast<std::size_t>(end - to);
        if (control < 128) {
            const auto there = static_cast<std::size_t>(dataEnd - from);
            const std::size_t size = std::min({control + 1, room, there});
            std::memcpy(to, from, size);
            from += size;
            to += size;
        } else if (control > 128) {
            if (from == dataEnd) return;
            const std::size_t size = std::min(257 - control, room);
            std::memset(to, *from++, size);
            to += size;
        }
    }
}

void DecodeDeltaRow(ByteSpan data, const std::uint8_t* seed, const RowTarget& target) {
    CopySeed(seed, target);
    std::size_t at = target.offset;
    const std::uint8_t* from = data.data;
    const std::uint8_t* const dataEnd = from + data.size;
    while (from != dataEnd) {
        const std::size_t command = *from++;
        at += DeltaOffset(command, from, dataEnd);
        if (at >= target.size) return;
        const auto there = static_cast<std::size_t>(dataEnd - from);
        const std::size_t size = std::min({(command >> 5) + 1, target.size - at, there});
        // Full replacements are the common case of dense data: one 8-byte move each.
        if (size == 8) {
            std::memcpy(target.row + at, from, 8);
        } else {
            for (std::size_t i = 0; i < size; ++i) target.row[at + i] = from[i];
        }
        at += size;
        from += size;
    }
}

namespace {

std::size_t RunLengthSize(ByteSpan data) {
    std::size_t size = 0;
    for (std::size_t i = 0; i + 1 < data.size; i += 2) size += std::size_t{data.data[i]} + 1;
    return size;
}

std::size_t PackBitsSize(ByteSpan data) {
    std::size_t size = 0;
    for (std::size_t i = 0; i < data.size;) {
        const std::size_t control = data.data[i];
        if (control < 128) size += std::min(control + 1, data.size - i - 1);
        if (control > 128 && i + 1 < data.size) size += 257 - control;
        i += control < 128 ? control + 2 : control > 128 ? 2 : 1;
    }
    return size;
}

std::size_t DeltaSize(ByteSpan data) {
    std::size_t size = 0;
    for (std::size_t i = 0; i < data.size;) {
        const std::size_t command = data.data[i++];
        std::size_t offset = command & 31;
        for (std::size_t more = 255; offset >= 31 && more == 255 && i < data.size; ++i) {
            more = data.data[i];
            offset += more;
        }
        const std::size_t bytes = std::min((command >> 5) + 1, data.size - i);
        if (bytes > 0) size += offset + bytes;
        i += bytes;
    }
    return size;
}

}  // namespace

std::size_t DecodedSize(ByteSpan data, int method) {
    switch (method) {
        case 0:
            return data.size;
        case 1:
            return RunLengthSize(data);
        case 2:
            return PackBitsSize(data);
        case 3:
            return DeltaSize(data);
        default:
            return SIZE_MAX;
    }
}

}  // namespace qm
