#include "render/pdf/content_stream.h"

#include <algorithm>
#include <cmath>

namespace qm::pdf {

namespace {

std::int64_t Nearest(double number) {
    constexpr double kLimit = 1e13;
    return number > -kLimit && number < kLimit ? std::llround(number) : 0;
}

}  // namespace

ContentStream& ContentStream::Whole(double number) { return *this << Nearest(number); }

ContentStream& ContentStream::Tenths(double number) {
    const std::int64_t tenths = Nearest(number * 10.0);
    if (tenths % 10 == 0) return *this << tenths / 10;
    char* at = Room(kNumberBytes);
    if (tenths < 0) *at++ = '-';
    const std::int64_t size = std::abs(tenths);
    at = std::to_chars(at, at + kNumberBytes - 4, size / 10).ptr;
    *at++ = '.';
    *at++ = static_cast<char>('0' + size % 10);
    Used(at);
    return *this;
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
