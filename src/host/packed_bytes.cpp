// See packed_bytes.h.
#include "host/packed_bytes.h"

#include <lz4.h>

#include <cstring>

namespace qm {

namespace {

// Of labels a tenth more bytes in less than half of the time that 1 takes.
constexpr int kAcceleration = 4;

int AsInt(std::size_t size) { return static_cast<int>(size); }
const char* AsChars(const std::uint8_t* bytes) { return reinterpret_cast<const char*>(bytes); }
char* AsChars(std::uint8_t* bytes) { return reinterpret_cast<char*>(bytes); }

}  // namespace

std::size_t MaxPackedBytes(std::size_t size) {
    return static_cast<std::size_t>(LZ4_compressBound(AsInt(size)));
}

std::size_t Pack(const std::uint8_t* from, std::size_t size, std::uint8_t* to) {
    return static_cast<std::size_t>(LZ4_compress_fast(AsChars(from), AsChars(to), AsInt(size),
                                                      AsInt(MaxPackedBytes(size)), kAcceleration));
}

void Unpack(const std::uint8_t* from, std::size_t packed, std::uint8_t* to, std::size_t size) {
    LZ4_decompress_safe(AsChars(from), AsChars(to), AsInt(packed), AsInt(size));
}

}  // namespace qm
