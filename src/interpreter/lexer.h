// The lexer: separators and numbers of the plotter language, read from an InputReader in cooked
// mode; Parameters, from which the handlers take theirs.
//
// Numbers have no exponent form; a number ends at the first byte that is no part of it, which stays
// unread. Line ends and NULs inside a number are not part of the stream. Tests:
// tests/interpreter/lexer_test.cpp.
#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "common/geometry.h"
#include "interpreter/input_reader.h"

namespace qm {

// What GetShortParam and GetIntParam answer when no number follows.
inline constexpr std::int16_t kAbsentShort = INT16_MIN;
inline constexpr std::int32_t kAbsentInt = INT32_MIN;

// Skips bytes below 33 (but not ESC) and commas.
void SkipSeparators(InputReader& input);

// An integer: an optional sign and digits, accumulated with 32-bit wrap-around. A sign without
// digits is 0. Absent: kAbsentInt, and nothing but separators is consumed.
std::int32_t GetIntParam(InputReader& input);

// The same number cut to 16 bits; nothing when none follows.
std::optional<std::int16_t> FindShortParam(InputReader& input);
// As FindShortParam, for commands to which a given -32768 is as good as none: absent: kAbsentShort.
inline std::int16_t GetShortParam(InputReader& input) {
    return FindShortParam(input).value_or(kAbsentShort);
}

// A number that may be missing. Small enough to come back in registers, which is what makes points
// fast: a pair just written to memory number by number cannot be read at once.
struct Real {
    double value = 0.0;
    bool given = false;
};
// A real: an optional sign, digits (accumulated in 32 unsigned bits, then taken as signed) and an
// optional fraction. Not given when none follows; then nothing but separators is consumed.
Real GetReal(InputReader& input);
// As GetReal; false and `value` untouched when none follows.
inline bool GetRealParam(InputReader& input, double& value) {
    const Real real = GetReal(input);
    if (real.given) value = real.value;
    return real.given;
}

// An escape sequence's value: digits and signs up to another byte, which is consumed and returned.
// `value` is negative when a '-' stood anywhere in it; `hadSign` says whether any sign did.
std::uint8_t GetSignedNumber(InputReader& input, std::int32_t& value, bool& hadSign);

// The input and the numbers that the handlers read from it.
struct Parameters {
    explicit Parameters(DrawingOperations& source) : input(source) {}

    // Reads up to `count` (at most kMaxParams) reals into the slots; returns how many came. The
    // other slots keep what an earlier command left there.
    int GetParams(int count) {
        assert(count <= static_cast<int>(kMaxParams));
        for (int i = 0; i < count; ++i) {
            if (!GetRealParam(slots[static_cast<std::size_t>(i)])) return i;
        }
        return count;
    }
    // Two neighbouring slots as a point.
    PointD PointAt(std::size_t slot) const { return {slots[slot], slots[slot + 1]}; }
    // False, and `point` untouched, without two numbers. They go into the first slots as well.
    bool GetPoint(PointD& point) {
        const Real x = GetReal(input);
        if (!x.given) return false;
        slots[0] = x.value;
        const Real y = GetReal(input);
        if (!y.given) return false;
        slots[1] = y.value;
        point = {x.value, y.value};
        return true;
    }
    std::int32_t GetIntParam() { return qm::GetIntParam(input); }
    std::int16_t GetShortParam() { return qm::GetShortParam(input); }
    // `absent` when no number follows.
    std::int16_t GetShortOr(std::int16_t absent) {
        const std::int16_t value = GetShortParam();
        return value == kAbsentShort ? absent : value;
    }
    bool GetRealParam(double& value) { return qm::GetRealParam(input, value); }

    static constexpr std::size_t kMaxParams = 8;

    InputReader input;
    std::array<double, kMaxParams> slots{};
};

inline bool IsDigit(std::uint8_t c) { return c >= '0' && c <= '9'; }
inline bool IsUpper(std::uint8_t c) { return c >= 'A' && c <= 'Z'; }
// Folds 'a'..'z' to upper case; other bytes stay.
inline std::uint8_t FoldToUpper(std::uint8_t c) {
    return c >= 'a' && c <= 'z' ? static_cast<std::uint8_t>(c & ~0x20U) : c;
}

}  // namespace qm
