// See pack_bits.h.
#include "export/pack_bits.h"

#include <cstring>

#include "common/numbers.h"

namespace qm {
namespace {

constexpr std::size_t kLongest = 128;        // bytes of a literal or run
constexpr std::size_t kLongestJoined = 126;  // of a literal that a run of 2 may still join
constexpr std::size_t kWord = sizeof(std::uint64_t);

constexpr std::uint64_t kOnes = 0x0101010101010101;

// Bit 7 of each byte that is 0 in `word`, and no other bit.
std::uint64_t ZeroBytes(std::uint64_t word) {
    constexpr std::uint64_t kLow = 0x7F * kOnes;
    return ~(((word & kLow) + kLow) | word | kLow);
}

// The first position from `from` on whose byte is equal to the next one, or `end` when there is
// none. Eight bytes at a time: literals of photographs are long.
const std::uint8_t* FindRun(const std::uint8_t* from, const std::uint8_t* end) {
    for (; static_cast<std::size_t>(end - from) > kWord; from += kWord) {
        const std::uint64_t equal = ZeroBytes(WordAt(from) ^ WordAt(from + 1));
        if (equal != 0) return from + __builtin_ctzll(equal) / 8;
    }
    while (end - from > 1 && from[0] != from[1]) ++from;
    return end - from > 1 ? from : end;
}

// The end of the run that starts at `from` and has at least two bytes.
const std::uint8_t* EndOfRun(const std::uint8_t* from, const std::uint8_t* end) {
    const std::uint8_t byte = *from;
    const std::uint64_t repeated = kOnes * byte;
    from += 2;
    if (from < end && *from != byte) return from;
    for (; static_cast<std::size_t>(end - from) >= kWord; from += kWord) {
        const std::uint64_t other = WordAt(from) ^ repeated;
        if (other != 0) return from + __builtin_ctzll(other) / 8;
    }
    while (from < end && *from == byte) ++from;
    return from;
}

// The packed row under construction. The literal is not copied while it grows: it is the last
// `literal_` bytes of the row in front of the position the packer has reached.
class Packer {
  public:
    explicit Packer(std::uint8_t* packed) : begin_(packed), end_(packed) {}

    // The bytes from `from` to `to` differ from their neighbours.
    void AddSingles(const std::uint8_t* from, const std::uint8_t* to) {
        literal_ += static_cast<std::size_t>(to - from);
        while (literal_ >= kLongest) EndLiteral(to, kLongest);
    }

    // `count` equal bytes that end at `to`.
    void AddRun(const std::uint8_t* to, std::size_t count) {
        if (count == 2 && literal_ > 0 && literal_ <= kLongestJoined) {
            AddSingles(to - 2, to);
            return;
        }
        EndLiteral(to - count, literal_);
        for (; count > kLongest; count -= kLongest) PutRun(kLongest, to[-1]);
        if (count > 1) PutRun(count, to[-1]);
        // The last byte of a run of 128 n + 1 stands alone.
        if (count == 1) AddSingles(to - 1, to);
    }

    std::size_t Finish(const std::uint8_t* to) {
        EndLiteral(to, literal_);
        return static_cast<std::size_t>(end_ - begin_);
    }

  private:
    // Writes the first `count` bytes of the literal that reaches up to `to`.
    void EndLiteral(const std::uint8_t* to, std::size_t count) {
        if (count == 0) return;
        *end_++ = static_cast<std::uint8_t>(count - 1);
        std::memcpy(end_, to - literal_, count);
        end_ += count;
        literal_ -= count;
    }
    void PutRun(std::size_t count, std::uint8_t byte) {
        *end_++ = static_cast<std::uint8_t>(257 - count);
        *end_++ = byte;
    }

    std::uint8_t* begin_;
    std::uint8_t* end_;
    std::size_t literal_ = 0;
};

}  // namespace

std::size_t PackBits(const std::uint8_t* row, std::size_t size, std::uint8_t* packed) {
    Packer packer(packed);
    const std::uint8_t* const end = row + size;
    for (const std::uint8_t* at = row; at < end;) {
        const std::uint8_t* const run = FindRun(at, end);
        packer.AddSingles(at, run);
        if (run == end) break;
        at = EndOfRun(run, end);
        packer.AddRun(at, static_cast<std::size_t>(at - run));
    }
    return packer.Finish(end);
}

}  // namespace qm
