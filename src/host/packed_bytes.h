// Bytes of a display list packed by LZ4: what repeats, as the strokes of letters do, stands there
// once. They never leave the process, so unpacking trusts them. Test:
// tests/host/display_list_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm {

// Room that Pack needs for `size` bytes, at most 1 GiB.
std::size_t MaxPackedBytes(std::size_t size);
// Packs `size` bytes at `from` to `to`; returns how many it wrote.
std::size_t Pack(const std::uint8_t* from, std::size_t size, std::uint8_t* to);
// Unpacks what Pack made of `size` bytes.
void Unpack(const std::uint8_t* from, std::size_t packed, std::uint8_t* to, std::size_t size);

}  // namespace qm
