#include "render/pdf/content_stream.h"

#include <cmath>

#include "common/numbers.h"

namespace qm::pdf {

namespace {

std::int64_t Nearest(double number) {
    constexpr double kLimit = 1e13;
    if (!(number > -kLimit && number < kLimit)) return 0;
    return TruncateToInt64(number + std::copysign(0.5, number));
}

}  // namespace

ContentStream& ContentStream::Whole(double number) { return *this << Nearest(number); }

ContentStream& ContentStream::Tenths(double number) {
    const std::int64_t tenths = Nearest(number * 10.0);
    if (tenths % 10 == 0) return *this << tenths / 10;
    char* at = Room(kNumberBytes);
    if (tenths < 0) *at++ = '-';
    const std::int64_t size = tenths < 0 ? -tenths : tenths;
    at = PutDecimal(at, size / 10);
    *at++ = '.';
    *at++ = static_cast<char>('0' + size % 10);
    Used(at);
    return *this;
}

void ContentStream::Letter(std::int64_t x, std::int64_t y, std::uint32_t number) {
    constexpr std::string_view kTurn = "1 0 0 1 ";
    constexpr std::string_view kName = "cm/g";
    constexpr std::string_view kDraw = " Do\n";
    const auto put = [](char* to, std::string_view text) {
        std::memcpy(to, text.data(), text.size());
        return to + text.size();
    };
    char* at = put(Room(3 * kNumberBytes + 16), kTurn);
    at = PutDecimal(at, x);
    *at++ = ' ';
    at = PutDecimal(at, y);
    *at++ = ' ';
    at = PutDecimal(put(at, kName), number);
    used_ = static_cast<std::size_t>(put(at, kDraw) - buffer_.get());
}

void ContentStream::Flush() {
    if (used_ == 0) return;
    pieces_.push_back(file_.WriteStream("", {buffer_.get(), used_}));
    used_ = 0;
}

const std::vector<ObjectNumber>& ContentStream::Finish() {
    Flush();
    return pieces_;
}

}  // namespace qm::pdf
