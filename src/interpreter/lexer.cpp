// See lexer.h. Reals are read by two routines with the same result: one over the reader's
// look-ahead without any bookkeeping, for nearly all numbers, and one byte by byte for those at a
// block edge or a progress step.
#include "interpreter/lexer.h"

#include <array>

#include "common/numbers.h"
#include "common/units.h"

namespace qm {

namespace {

bool IsSeparator(std::uint8_t c) { return (c < 33 && c != kEscape) || c == ','; }

// Weights of the digits behind the point, made by dividing again and again, as the last bits of
// existing results are.
struct FractionWeights {
    static constexpr int kCount = 24;
    std::array<double, kCount> weight{};
    constexpr FractionWeights() {
        double factor = 1.0;
        for (double& w : weight) {
            factor /= 10.0;
            w = factor;
        }
    }
};
constexpr FractionWeights kFraction;

double WithSign(double value, bool negative) { return negative ? -value : value; }

double FromDigits(std::uint32_t digits) {
    return static_cast<double>(static_cast<std::int32_t>(digits));
}

enum class Scan { kNumber, kNone, kUnsure };

// A forward look at bytes that need no bookkeeping. Running out of them makes the answer unsure.
struct LookAhead {
    const std::uint8_t* p;
    const std::uint8_t* const end;

    // Hands the digits at hand to `take` and stops at the byte behind them that cooked reading
    // would give; false when there is none. `take` answers false to give up.
    template <typename Take>
    bool Digits(Take take) {
        for (;; ++p) {
            for (; p < end && IsDigit(*p); ++p) {
                if (!take(static_cast<std::uint32_t>(*p - '0'))) return false;
            }
            if (p >= end) return false;
            if (!IsCookedAway(*p)) return true;
        }
    }
};

// Adds what follows the point; false when the look-ahead or the weights do not reach to its end.
bool TakeFraction(LookAhead& look, double& value) {
    ++look.p;
    std::size_t k = 0;
    return look.Digits([&value, &k](std::uint32_t digit) {
        if (k == FractionWeights::kCount) return false;
        value += digit * kFraction.weight[k++];
        return true;
    });
}

// Reads a real from the look-ahead. kNone leaves look.p at the byte that is no number.
Scan ScanReal(LookAhead& look, double& result) {
    while (look.p < look.end && IsSeparator(*look.p)) ++look.p;
    if (look.p >= look.end) return Scan::kUnsure;
    const std::uint8_t first = *look.p;
    const bool negative = first == '-';
    if (negative || first == '+') {
        ++look.p;
    } else if (!IsDigit(first) && first != '.') {
        return Scan::kNone;
    }
    std::uint32_t digits = 0;
    const auto takeDigit = [&digits](std::uint32_t digit) {
        digits = digits * 10 + digit;
        return true;
    };
    if (!look.Digits(takeDigit)) return Scan::kUnsure;
    double value = FromDigits(digits);
    if (*look.p == '.' && !TakeFraction(look, value)) return Scan::kUnsure;
    result = WithSign(value, negative);
    return Scan::kNumber;
}

// False when an abort cut off further digits.
bool ReadFraction(InputReader& input, double& value) {
    double factor = 1.0;
    std::uint8_t c = input.GetCooked();
    while (IsDigit(c) && !input.Over()) {
        factor /= 10.0;
        value += (c - '0') * factor;
        c = input.GetCooked();
    }
    input.UngetChar();
    return !IsDigit(c);
}

// The byte-wise reader of reals. Nothing is a number once the input is aborted: neither the digits
// that the abort cut off from the rest, nor the byte that an ended input repeats for ever.
bool ReadReal(InputReader& input, double& result) {
    SkipSeparators(input);
    if (input.aborted) return false;
    std::uint8_t c = input.GetCooked();
    const bool negative = c == '-';
    if (negative || c == '+') {
        c = input.GetCooked();
    } else if (!IsDigit(c) && c != '.') {
        input.UngetChar();
        return false;
    }
    std::uint32_t digits = 0;
    while (IsDigit(c) && !input.Over()) {
        digits = digits * 10 + (c - static_cast<std::uint32_t>('0'));
        c = input.GetCooked();
    }
    if (IsDigit(c)) return false;
    double value = FromDigits(digits);
    if (c != '.') {
        input.UngetChar();
    } else if (!ReadFraction(input, value)) {
        return false;
    }
    result = WithSign(value, negative);
    return true;
}

// Reads an integer into `value`; false when none follows or the input is aborted.
bool ReadInteger(InputReader& input, std::int32_t& value) {
    SkipSeparators(input);
    if (input.aborted) return false;
    std::uint8_t c = input.GetCooked();
    const bool negative = c == '-';
    if (negative || c == '+') {
        c = input.GetCooked();
    } else if (!IsDigit(c)) {
        input.UngetChar();
        return false;
    }
    std::uint32_t digits = 0;
    while (IsDigit(c) && !input.Over()) {
        digits = digits * 10 + (c - static_cast<std::uint32_t>('0'));
        c = input.GetCooked();
    }
    if (IsDigit(c)) return false;
    input.UngetChar();
    value = static_cast<std::int32_t>(negative ? 0U - digits : digits);
    return true;
}

}  // namespace

void SkipSeparators(InputReader& input) {
    std::uint8_t c = input.GetCooked();
    while (IsSeparator(c) && !input.Over()) c = input.GetCooked();
    input.UngetChar();
}

std::int32_t GetIntParam(InputReader& input) {
    std::int32_t value = kAbsentInt;
    ReadInteger(input, value);
    return value;
}

std::optional<std::int16_t> FindShortParam(InputReader& input) {
    std::int32_t value = 0;
    if (!ReadInteger(input, value)) return std::nullopt;
    return static_cast<std::int16_t>(static_cast<std::uint32_t>(value) & 0xFFFFU);
}

namespace {

constexpr unsigned kBytesAtOnce = 8;

// Of each byte the highest bit, where it is no digit; exact up to the lowest one that is none. The
// bytes are those of the text, exclusive-or'd with '0'.
std::uint64_t NoDigits(std::uint64_t bytes) {
    constexpr std::uint64_t kHighest = 0x8080808080808080U;
    constexpr std::uint64_t kUpToHighest = 0x7676767676767676U;  // from 10 on
    return (bytes | (bytes + kUpToHighest)) & kHighest;
}

// What eight digits stand for, the lowest byte's first: neighbours make numbers of two, four and
// eight digits.
std::uint32_t ValueOfDigits(std::uint64_t bytes) {
    constexpr std::uint64_t kFirstOfFour = 0x000000FF000000FFU;
    const std::uint64_t pairs = bytes * 10 + (bytes >> 8);
    const std::uint64_t upper = (pairs & kFirstOfFour) * (std::uint64_t{1000000} << 32 | 100U);
    const std::uint64_t lower = (pairs >> 16 & kFirstOfFour) * (std::uint64_t{10000} << 32 | 1U);
    return static_cast<std::uint32_t>((upper + lower) >> 32);
}

// The digits at `p`, up to seven of them, all at once: a loop would be mispredicted at the end of
// most numbers. Not given: none or more of them, or not a whole number.
inline Real ScanDigits(InputReader& input, const std::uint8_t* p, bool negative) {
    constexpr std::uint64_t kZeros = 0x3030303030303030U;
    const std::uint64_t bytes = WordAt(p) ^ kZeros;
    const std::uint64_t ends = NoDigits(bytes);
    if (ends == 0 || (ends & 0x80U) != 0) return {};
    const auto length = static_cast<unsigned>(__builtin_ctzll(ends)) / 8;
    p += length;
    // A line end may have further digits behind it.
    if (*p == '.' || IsCookedAway(*p)) return {};
    input.Advance(p);
    const std::uint64_t digits = bytes << (8 * (kBytesAtOnce - length));
    return {WithSign(FromDigits(ValueOfDigits(digits)), negative), true};
}

// Most numbers: whole ones of few digits, behind a comma or nothing, that end inside the
// look-ahead. Not given: not such a number, and nothing is consumed.
inline Real ScanWhole(InputReader& input) {
    constexpr std::ptrdiff_t kMostBytes = 10;  // comma, sign, digits, what ends them
    const std::uint8_t* p = input.Cursor();
    if (input.Limit() - p < kMostBytes) return {};
    // Jumps, which are foreseen: what is added to `p` would have to wait for the byte.
    if (__builtin_expect(*p == ',', 1)) ++p;
    if (*p == '-') return ScanDigits(input, p + 1, true);
    return ScanDigits(input, p, false);
}

// Any number. Not inlined: what it saves and restores would cost the numbers above as well.
[[gnu::noinline]] Real ScanAny(InputReader& input) {
    LookAhead look{input.Cursor(), input.Limit()};
    Real real;
    const Scan scan = ScanReal(look, real.value);
    if (scan == Scan::kUnsure) {
        real.given = ReadReal(input, real.value);
    } else {
        real.given = scan == Scan::kNumber;
        input.Advance(look.p);
    }
    return real;
}

}  // namespace

Real GetReal(InputReader& input) {
    const Real whole = ScanWhole(input);
    return whole.given ? whole : ScanAny(input);
}

std::uint8_t GetSignedNumber(InputReader& input, std::int32_t& value, bool& hadSign) {
    std::uint32_t digits = 0;
    bool negative = false;
    hadSign = false;
    std::uint8_t c = input.GetCooked();
    while ((IsDigit(c) || c == '+' || c == '-') && !input.Over()) {
        if (IsDigit(c)) {
            digits = digits * 10 + (c - static_cast<std::uint32_t>('0'));
        } else {
            hadSign = true;
            negative = negative || c == '-';
        }
        c = input.GetCooked();
    }
    value = static_cast<std::int32_t>(negative ? 0U - digits : digits);
    return c;
}

}  // namespace qm
