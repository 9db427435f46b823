// See input_reader.h. The order of the steps here decides which byte completes a progress step and
// what is read at the end of the input; both are visible outside.
#include "interpreter/input_reader.h"

#include <algorithm>
#include <cstring>

namespace qm {

namespace {

// A framing record: 0xCD and 19 bytes more, then perhaps one 0x01.
constexpr std::uint8_t kRecordStart[] = {0xCA, 0x10, 0x02};
constexpr std::ptrdiff_t kRecordRest = 19;
constexpr std::ptrdiff_t kRecordLookAhead = 21;
constexpr std::int32_t kLastPercent = 99;

}  // namespace

InputReader::InputReader(DrawingOperations& source) : source_(source) {}

void InputReader::StartProgress(std::uint32_t dataSize) {
    progressStep_ = dataSize / 99;
    UpdateLimit();
}

std::uint8_t InputReader::GetCharSlow(bool raw) {
    if (!raw) {
        // Line ends between commands are common: inside the limit they need no bookkeeping either.
        const std::uint8_t* p = cursor_;
        while (p < limit_ && IsCookedAway(*p)) ++p;
        if (p < limit_) {
            cursor_ = p + 1;
            return *p;
        }
    }
    std::uint8_t c = NextByte();
    // Only the first byte of a read is looked at for framing, not those behind skipped line ends.
    if (framedInput && c == kFramingByte) c = SkipRecordHeader(c);
    if (!raw) {
        // The guard keeps an ended input, whose last byte repeats, from looping here for ever.
        while (IsCookedAway(c) && !(Over() && cursor_ == end_)) c = NextByte();
    }
    if (ProgressBytes() >= progressStep_) CompleteProgressStep();
    UpdateLimit();
    return c;
}

std::uint8_t InputReader::NextByte() {
    if (cursor_ == end_) {
        if (Over()) {
            // Nothing is read any more; the byte still counts as read.
            ++progressBase_;
            return *block_;
        }
        Refill();
        if (cursor_ == end_) {
            ++progressBase_;
            return *block_;
        }
    }
    return *cursor_++;
}

// Reads the next block. When the source has nothing left, the first time one stale byte (whatever
// the block's first byte holds) stands in for it and the second time the ';' that ends whatever
// command is pending. Quirk: the stale byte is read as data. Plots that end inside a label carry it
// in their last text.
void InputReader::Refill() {
    progressBase_ += cursor_ - anchor_;
    if (!staleAvailable_) {
        const auto kept =
            std::min<std::ptrdiff_t>(end_ - historyBegin_, static_cast<std::ptrdiff_t>(kHistory));
        std::memmove(block_ - kept, end_ - kept, static_cast<std::size_t>(kept));
        historyBegin_ = block_ - kept;
    }
    cursor_ = block_;
    anchor_ = block_;
    if (sourceFailed_) {
        *block_ = ';';
        endOfInput = true;
        staleAvailable_ = false;
        end_ = block_ + 1;
        return;
    }
    std::uint32_t count = source_.ReadData(block_, kBlockSize);
    count = std::min(count, static_cast<std::uint32_t>(kBlockSize));
    sourceFailed_ = count == 0;
    staleAvailable_ = sourceFailed_;
    end_ = block_ + (sourceFailed_ ? 1 : count);
}

void InputReader::UngetChar() {
    if (Over()) return;
    if (cursor_ == historyBegin_) {
        // Nothing was kept: ask the source for the byte again.
        source_.SeekData(-1, 1);
        Refill();
        --progressBase_;
        UpdateLimit();
        return;
    }
    --cursor_;
    // Quirk: a pushed-back stale byte is lost; the ';' follows.
    if (staleAvailable_ && cursor_ == block_) end_ = block_;
    limit_ = std::min(limit_, end_);
}

void InputReader::UngetChars(int count) {
    for (int i = 0; i < count; ++i) UngetChar();
}

// Removes a framing record that `first` (0xCD) starts and returns the byte behind it. A record that
// is not wholly buffered is left in the data, as a plain 0xCD is.
std::uint8_t InputReader::SkipRecordHeader(std::uint8_t first) {
    if (end_ - cursor_ <= kRecordLookAhead) return first;
    if (std::memcmp(cursor_, kRecordStart, sizeof kRecordStart) != 0) return first;
    cursor_ += kRecordRest;
    anchor_ += kRecordRest;  // the record's bytes do not count as progress
    std::uint8_t c = *cursor_++;
    if (c == 0x01) {
        c = *cursor_++;
        ++anchor_;
    }
    return c;
}

void InputReader::CompleteProgressStep() {
    anchor_ = cursor_;
    progressBase_ = 0;
    if (progressPercent_ > kLastPercent) return;  // no step beyond this one is reported
    ++progressPercent_;
    if (progressPercent_ <= kLastPercent && source_.ReportProgress(progressPercent_) == 0) {
        aborted = true;
    }
}

// Sets the end of the fast path: no byte in front of it ends the block, completes a progress step
// or starts a record.
void InputReader::UpdateLimit() {
    limit_ = end_;
    if (aborted) {
        // Buffered bytes must not be taken without a look at the flag.
        limit_ = cursor_;
        return;
    }
    if (progressPercent_ < kLastPercent) {
        // One below the cursor when every read completes a step: so a byte that is pushed back and
        // read again completes one too.
        const std::int64_t untilStep = progressStep_ - ProgressBytes() - 1;
        if (untilStep < limit_ - cursor_) limit_ = cursor_ + untilStep;
    }
    if (framedInput && cursor_ < limit_) {
        const auto size = static_cast<std::size_t>(limit_ - cursor_);
        if (const void* record = std::memchr(cursor_, kFramingByte, size)) {
            limit_ = static_cast<const std::uint8_t*>(record);
        }
    }
}

void InputReader::EnableFraming() {
    framedInput = true;
    UpdateLimit();
}

std::size_t InputReader::ReadRaw(std::uint8_t* buffer, std::size_t count) {
    std::size_t done = 0;
    while (done < count && !Over()) {
        const std::size_t chunk = std::min(count - done, FreeBytes());
        if (chunk > 0) {
            std::memcpy(buffer + done, cursor_, chunk);
            cursor_ += chunk;
            done += chunk;
            continue;
        }
        const std::uint8_t c = GetRaw();
        if (endOfInput) break;
        buffer[done++] = c;
    }
    return done;
}

void InputReader::SkipRaw(std::size_t count) {
    while (count > 0 && !Over()) {
        const std::size_t chunk = std::min(count, FreeBytes());
        cursor_ += chunk;
        count -= chunk;
        if (chunk == 0) {
            GetRaw();
            --count;
        }
    }
}

}  // namespace qm
