// The encoded polyline: command PE, coordinates as base-64 (or base-32) digits with flags between
// them.
//
// EncodedNumbers decodes, PolylineEncoded in encoded_polyline.cpp draws. Encoding as in the
// published HP-GL/2 language: sign in the lowest bit, least significant digit first, terminating
// digits from 191 (8-bit) or 95 (7-bit) upward. Tests: tests/interpreter/encoded_polyline_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/geometry.h"
#include "interpreter/input_reader.h"

namespace qm {

// Points that a PE command collects before it sends them.
// Quirk: a longer run is cut, and the segment between the pieces is not drawn.
inline constexpr std::size_t kMaxEncodedPoints = 255;

// The buffers of PE; they live with the interpreter, because most PE commands are too short to be
// worth making them.
struct EncodedState {
    std::array<PointD, kMaxEncodedPoints> encodedPoints;  // pending, current units
    std::array<PointI, kMaxEncodedPoints> plotterPoints;  // on their way out
};

// How a number ended.
enum class EncodedEnd {
    kNo,           // a number was read
    kOrdinary,     // ';' where a number may start
    kInsideAtEnd,  // ';' inside a number: the command is over
    kInside        // a byte that is no digit: the command is broken up to the next ';'
};

class EncodedNumbers {
  public:
    explicit EncodedNumbers(InputReader& input) : input_(input) {}

    // Reads one coordinate into `value`. After anything but kNo the value is not to be used.
    EncodedEnd ReadCoordinate(double& value);
    // Reads points as each lies from the one before it, the first from `at`, while they are plain,
    // at most `most`; returns how many.
    std::size_t ReadPlainPoints(PointD at, PointD* points, std::size_t most);
    // Reads the integer behind a pen or fraction flag. False when it is malformed; the offending
    // byte is consumed and `value` is untouched.
    bool ReadInteger(std::int32_t& value);

    // Whether a number must start at this byte: it is no flag, line end or the like.
    static bool StartsNumber(std::uint8_t c) {
        return (c >= kLowestDigit && c < 127) || c >= kEightBit.encodedTerminator;
    }
    // Numbers are base 32 from now on, with digits of seven bits.
    void UseSevenBits() { digits_ = kSevenBit; }
    // Coordinates have `bits` fractional bits; negative counts are none.
    void SetFractionBits(std::int32_t bits);

  private:
    static constexpr std::uint8_t kLowestDigit = 63;
    struct Digits {
        std::int32_t encodedBase;        // a digit weighs so many times the one before it
        std::uint8_t encodedMask;        // its bits; also the lowest byte that continues a number
        std::uint8_t encodedTerminator;  // lowest byte that ends a number
        unsigned shift;                  // bits of a digit
        int maxOpenDigits;     // digits in front of the final one that ReadInteger accepts
        std::uint8_t highest;  // highest byte that is a digit
    };
    static constexpr Digits kEightBit{64, 63, 191, 6, 2, 254};
    static constexpr Digits kSevenBit{32, 31, 95, 5, 3, 126};

    // The weight of the first digit of a negative number and of another.
    using Weights = std::array<double, 2>;
    template <unsigned kShift>
    static bool TakePlain(const std::uint8_t*& p, const Weights& weights, double& value);
    template <unsigned kShift>
    std::size_t TakePlainPoints(PointD at, PointD* points, std::size_t most);
    bool ReadPlainCoordinate(double& value);
    bool IsOpenDigit(std::uint8_t c) const;
    bool IsFinalDigit(std::uint8_t c) const {
        return c >= digits_.encodedTerminator && c <= digits_.highest;
    }

    InputReader& input_;
    Digits digits_ = kEightBit;
    // The first digit's weight: a half drops the sign bit.
    double encodedFraction_ = 0.5;
};

}  // namespace qm
