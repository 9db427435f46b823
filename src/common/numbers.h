// Numbers: the constants of the plotter world and the only ways from a double to an integer.
//
// A plot file can hold any number, so every conversion states what happens outside the target's
// range, and every sum that a file can drive past 32 bits wraps as two's complement does. Tests:
// tests/common/numbers_test.cpp.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace qm {

// One turn and one degree, cut to these digits on purpose: arc end points and step counts of
// existing plots depend on the cut values, so M_PI is not used anywhere in the interpreter or the
// builder.
inline constexpr double kTwoPi = 6.2831853;
inline constexpr double kRadiansPerDegree = 0.0174532925;
// Step of a tessellated arc: four degrees in radians, cut like the others.
inline constexpr double kArcStep = 0.06981317;

// Truncates toward zero. Values that do not fit (and NaN) give INT32_MIN, the answer of the x86
// instruction that existing results rely on.
inline std::int32_t TruncateToInt32(double value) {
    if (value > -2147483649.0 && value < 2147483648.0) return static_cast<std::int32_t>(value);
    return INT32_MIN;
}

// The same for values within kSmall, without a question: for loops over points.
inline constexpr double kSmall = 1 << 30;
inline std::int32_t TruncateSmall(double value) { return static_cast<std::int32_t>(value); }

// Rounds half up (floor(v + 0.5)); outside the range as TruncateToInt32.
inline std::int32_t RoundToInt32(double value) { return TruncateToInt32(std::floor(value + 0.5)); }

// Truncates toward zero; values that do not fit (and NaN) give INT64_MIN. For positions in small
// parts of a dot.
inline std::int64_t TruncateToInt64(double value) {
    constexpr double kEnd = 9223372036854775808.0;
    return value >= -kEnd && value < kEnd ? static_cast<std::int64_t>(value) : INT64_MIN;
}

// 32-bit sums that a file can drive out of range: they wrap.
inline std::int32_t WrapAdd(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapSubtract(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapNegate(std::int32_t a) { return WrapSubtract(0, a); }

// The eight bytes from `from` on, the first one lowest.
inline std::uint64_t WordAt(const std::uint8_t* from) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the processors this is built for");
    std::uint64_t word = 0;
    std::memcpy(&word, from, sizeof word);
    return word;
}

// Bytes that `count` items of `size` bytes take, or nothing when a count is negative or the product
// exceeds `limit`. Asked before every allocation whose size comes from a file.
inline std::optional<std::size_t> CheckedBytes(std::int64_t count, std::int64_t size,
                                               std::int64_t limit = std::int64_t{1} << 31) {
    if (count < 0 || size < 0) return std::nullopt;
    if (size != 0 && count > limit / size) return std::nullopt;
    return static_cast<std::size_t>(count * size);
}

// Length of (x, y). Not std::hypot: its last bit differs between C libraries, and truncation would
// show it. The wider type keeps decimal lengths such as that of (37.8, 50.4) from falling short.
inline double Length(double x, double y) {
    using Wide = long double;
    return static_cast<double>(std::sqrt(Wide{x} * Wide{x} + Wide{y} * Wide{y}));
}

}  // namespace qm
