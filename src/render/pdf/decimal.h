// PutDecimal: whole numbers as text, in half the time of std::to_chars, because most of a page is
// numbers. Test: tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace qm::pdf {

// What PutDecimal writes at most.
inline constexpr std::size_t kDecimalBytes = 20;

namespace decimal {

// "00" to "99".
inline constexpr std::array<char, 200> kPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

inline char* PutPair(char* at, std::uint32_t number) {
    std::memcpy(at, &kPairs[std::size_t{2} * number], 2);
    return at + 2;
}

// A number below 10000.
inline char* PutShort(char* at, std::uint32_t number) {
    const bool odd = number < 10 || (number >= 100 && number < 1000);
    if (odd) *at++ = static_cast<char>('0' + (number < 10 ? number : number / 100));
    if (number < 10) return at;
    if (number >= 1000) at = PutPair(at, number / 100);
    return PutPair(at, number % 100);
}

}  // namespace decimal

// Writes the number at `at`, where there must be room, and returns the place behind it.
inline char* PutDecimal(char* at, std::int64_t number) {
    constexpr std::int64_t kLimit = 100'000'000;
    if (number <= -kLimit || number >= kLimit) {
        return std::to_chars(at, at + kDecimalBytes, number).ptr;
    }
    if (number < 0) *at++ = '-';
    const auto size = static_cast<std::uint32_t>(number < 0 ? -number : number);
    if (size < 10000) return decimal::PutShort(at, size);
    at = decimal::PutShort(at, size / 10000);
    return decimal::PutPair(decimal::PutPair(at, size / 100 % 100), size % 100);
}

}  // namespace qm::pdf
