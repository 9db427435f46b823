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

void ContentStream::Letter(std::int64_t x, std::int64_t y, const FormOperators& draw) {
    constexpr std::string_view kTurn = "1 0 0 1 ";
    char* at = Room(2 * kNumberBytes + kTurn.size() + sizeof draw.text);
    std::memcpy(at, kTurn.data(), kTurn.size());
    at = PutDecimal(at + kTurn.size(), x);
    *at++ = ' ';
    at = PutDecimal(at, y);
    *at++ = ' ';
    std::memcpy(at, draw.text.data(), sizeof draw.text);
    used_ = static_cast<std::size_t>(at + draw.size - buffer_.get());
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
