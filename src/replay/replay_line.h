// Lines of a replay script: splitting into values, and reading the values as the types calls take.
//
//   ParseLine("AppendText 10 20 \"a \\\"b\\\"\"  # label", 3)  ->  AppendText, 10, 20, "a "b""
//
// Values are separated by blanks; '#' outside quotes starts a comment. A quoted string is UTF-8
// with \", \\ and \xHH (the character of that number). Anything that does not fit throws
// ScriptError.
// Test: tests/replay/replay_test.cpp; the syntax for users: docs/replay.md.
#pragma once

#include <objbase.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/variant.h"

namespace qm {

// A script that cannot be understood; ends the replay.
class ScriptError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct ScriptValue {
    std::string text;   // as written, without quotes
    std::wstring wide;  // of a quoted string, its characters
    bool quoted = false;
};

struct ScriptLine {
    int number = 0;
    std::vector<ScriptValue> values;  // the first is the line's keyword or call
};

// Empty values for a blank line or a comment.
ScriptLine ParseLine(std::string_view text, int number);

// The values of one line behind its first, taken in order. `usage` names them in messages.
class Arguments {
  public:
    Arguments(const ScriptLine& line, std::string_view usage)
        : values_(line.values), usage_(usage) {}

    std::size_t Left() const noexcept { return values_.size() - next_; }
    // Values are left over: throws.
    void End() const;
    // Takes the values that are left, whatever they are.
    void Skip() noexcept { next_ = values_.size(); }

    // Decimal, or 0x and up to eight digits.
    LONG Integer();
    // Any number, "inf" and "nan" included.
    double Real();
    // true, false, 1 or 0.
    bool Boolean();
    Bstr Text();
    // The word as it stands, quoted or not.
    std::string Word();
    // At least `least` bytes of upper or lower case hexadecimal; the value may be absent when none
    // are needed.
    std::vector<std::uint8_t> Hex(std::size_t least);
    // Boolean, real (it holds '.', 'e', "inf" or "nan"), integer or string; VT_EMPTY when no value
    // is left.
    Variant Value();
    // Whether the next value is `word`; then it is taken.
    bool Take(std::string_view word) noexcept;

    // ": X,Y X,Y ..." to the end of the line: 2 * `count` numbers, `count` below 1 counting as 0.
    template <typename Number>
    std::vector<Number> Points(LONG count);
    // All points that are left behind the colon.
    template <typename Number>
    std::vector<Number> Points();

    // Throws a message that says what was expected of the value at hand.
    [[noreturn]] void Fail(std::string_view expected) const;

  private:
    const ScriptValue& Next(std::string_view expected);

    const std::vector<ScriptValue>& values_;
    std::string_view usage_;
    std::size_t next_ = 1;
};

}  // namespace qm
