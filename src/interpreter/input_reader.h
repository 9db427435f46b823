// InputReader: the byte stream of a plot, one block at a time, with push-back, progress and record
// framing.
//
// Two reading modes: raw gives every byte, cooked leaves out CR, LF and NUL. The common byte costs
// one compare: the cursor against a limit that stands for the end of the block, the next progress
// step and the next possible framing record at once; everything else is the slow path. Tests:
// tests/interpreter/input_reader_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "interpreter/drawing_operations.h"

namespace qm {

// What framing headers and records begin with.
inline constexpr std::uint8_t kFramingByte = 0xCD;

class InputReader {
  public:
    // `source` supplies the bytes and takes the progress; it must outlive the reader.
    explicit InputReader(DrawingOperations& source);
    InputReader(const InputReader&) = delete;
    InputReader& operator=(const InputReader&) = delete;

    // Begins progress reports, one per `dataSize` / 99 bytes and at most 99. Without this call
    // every read completes a step, which is how the detection pass runs.
    void StartProgress(std::uint32_t dataSize);

    // The next byte. After the last one comes a stale byte (see Refill), then ';' for ever.
    std::uint8_t GetChar(bool raw);
    std::uint8_t GetCooked() { return GetChar(false); }
    std::uint8_t GetRaw() { return GetChar(true); }

    // Gives the last byte back; up to kHistory in a row, also across a block edge. Does nothing
    // once the input is over or aborted.
    void UngetChar();
    void UngetChars(int count);

    // Reads `count` raw bytes into `buffer`; returns how many came before the end of input.
    std::size_t ReadRaw(std::uint8_t* buffer, std::size_t count);
    // Drops `count` raw bytes, fewer when the input ends.
    void SkipRaw(std::size_t count);

    // What the source says of its size; asks it anew.
    std::uint32_t DataSize() { return source_.GetDataSize(); }

    // True when every reading loop has to end.
    bool Over() const { return endOfInput || aborted; }

    // The bytes that may be looked at and taken without any bookkeeping: [Cursor(), Limit()). A
    // caller that consumes a prefix of them moves the cursor with Advance. CR, LF and NUL are still
    // in there.
    const std::uint8_t* Cursor() const { return cursor_; }
    const std::uint8_t* Limit() const { return limit_; }
    void Advance(const std::uint8_t* cursor) { cursor_ = cursor; }

    // Turns on the removal of framing records; called when a framing header has been seen.
    void EnableFraming();

    // The source is exhausted and the synthetic ';' has been supplied, or the end marker was read.
    bool endOfInput = false;
    // The progress callback asked to stop.
    bool aborted = false;
    // Framing records are being removed.
    bool framedInput = false;

    static constexpr std::size_t kBlockSize = 32768;
    static constexpr std::size_t kHistory = 16;

  private:
    std::uint8_t GetCharSlow(bool raw);
    std::uint8_t NextByte();
    std::uint8_t SkipRecordHeader(std::uint8_t first);
    void Refill();
    void CompleteProgressStep();
    void UpdateLimit();
    // Bytes that need no bookkeeping.
    std::size_t FreeBytes() const {
        return cursor_ < limit_ ? static_cast<std::size_t>(limit_ - cursor_) : 0;
    }
    std::int64_t ProgressBytes() const { return progressBase_ + (cursor_ - anchor_); }

    DrawingOperations& source_;
    // History in front, so that push-back across a block edge needs no seek, then the block.
    std::array<std::uint8_t, kHistory + kBlockSize> storage_{};
    std::uint8_t* const block_ = storage_.data() + kHistory;
    const std::uint8_t* cursor_ = block_;
    const std::uint8_t* limit_ = block_;         // fast path ends here; can be one below the cursor
    const std::uint8_t* end_ = block_;           // valid bytes end here
    const std::uint8_t* historyBegin_ = block_;  // push-back ends here
    bool sourceFailed_ = false;                  // a read from the source returned nothing
    bool staleAvailable_ = false;                // the block holds nothing but the stale byte

    // Bytes since the last progress step = progressBase_ + (cursor_ - anchor_), so that the fast
    // path counts nothing.
    const std::uint8_t* anchor_ = block_;
    std::int64_t progressBase_ = 0;
    std::int64_t progressStep_ = 0;
    std::int32_t progressPercent_ = 0;
};

// CR, LF or NUL: the bytes that cooked reading leaves out.
inline bool IsCookedAway(std::uint8_t c) { return c <= 13 && ((0x2401U >> c) & 1U) != 0; }

inline std::uint8_t InputReader::GetChar(bool raw) {
    if (cursor_ < limit_ && (raw || !IsCookedAway(*cursor_))) return *cursor_++;
    return GetCharSlow(raw);
}

}  // namespace qm
