// Command<...>: a plot command's text with the values it takes, checked when it is compiled.
//
//   inline constexpr Command<Int, Int> kPoint{"PA%d,%d;\r\n"};
//   CommandText text(kPoint, 12, 34);                          // "PA12,34;\r\n"
//
// Conversions are "%d" (Int), "%2.2f" (Real) and "%%", with the bytes printf would give in the "C"
// locale. Not printf itself: a host may run under a locale with a decimal comma, and this is
// several times as fast. The texts stand in plot_text.h. Test: tests/export/plot_format_test.cpp.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qm {

using Int = std::int32_t;
using Real = double;

namespace plot_format {

template <typename Value>
inline constexpr std::string_view kConversion = "";
template <>
inline constexpr std::string_view kConversion<Int> = "%d";
template <>
inline constexpr std::string_view kConversion<Real> = "%2.2f";

// Longest text of a value: -2147483648; all digits of the largest double, sign and two decimals.
template <typename Value>
inline constexpr std::size_t kMaxBytes = 11;
template <>
inline constexpr std::size_t kMaxBytes<Real> = 320;

// Longest format between the values of a command.
inline constexpr std::size_t kMaxLiteral = 48;

// Whether `format` holds exactly `conversions`, in order, besides "%%".
template <std::size_t N>
constexpr bool Fits(std::string_view format, const std::string_view (&conversions)[N]) {
    std::size_t next = 0;
    if (format.size() > kMaxLiteral) return false;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') continue;
        if (format.substr(i, 2) == "%%") {
            ++i;
        } else {
            // The last entry is an end mark that no format contains.
            if (format.substr(i, conversions[next].size()) != conversions[next]) return false;
            ++next;
        }
    }
    return next == N - 1;
}

// Writes the decimal text of `value` to `to`, which has room for it, and returns its end.
inline char* Print(char* to, Int value) {
    return std::to_chars(to, to + kMaxBytes<Int>, value).ptr;
}
// The same with two decimals: "0.35", "-0.00", "inf", "nan". Ties follow the exact binary value and
// then go to even, as in printf: 0.125 is "0.12".
inline char* Print(char* to, Real value) {
    return std::to_chars(to, to + kMaxBytes<Real>, value, std::chars_format::fixed, 2).ptr;
}

// Copies `format` up to and behind the next conversion; "%%" becomes "%".
inline char* CopyLiteral(char* to, const char*& format) {
    for (;; ++format) {
        if (*format == '\0') return to;
        if (*format == '%' && *++format != '%') return to;
        *to++ = *format;
    }
}

}  // namespace plot_format

template <typename... Values>
class Command {
  public:
    // A format that does not take exactly Values does not compile.
    constexpr explicit Command(const char* format) : format_(format) {
        constexpr std::string_view kEnd = "%end";
        const std::string_view conversions[] = {plot_format::kConversion<Values>..., kEnd};
        if (!plot_format::Fits(format, conversions)) throw "format and values disagree";
    }

    // Writes the text of the command and returns its end; `to` has room for MaxBytes().
    char* Print(char* to, Values... values) const {
        const char* format = format_;
        ((to = plot_format::CopyLiteral(to, format), to = plot_format::Print(to, values),
          format += plot_format::kConversion<Values>.size() - 1),
         ...);
        return plot_format::CopyLiteral(to, format);
    }

    static constexpr std::size_t MaxBytes() {
        return (plot_format::kMaxLiteral + ... + plot_format::kMaxBytes<Values>);
    }

  private:
    const char* format_;
};

// The text of a command with its values, in a buffer on the stack.
template <typename... Values>
class CommandText {
  public:
    explicit CommandText(const Command<Values...>& command, Values... values)
        : size_(static_cast<std::size_t>(command.Print(bytes_, values...) - bytes_)) {}
    std::string_view View() const { return {bytes_, size_}; }

  private:
    char bytes_[Command<Values...>::MaxBytes()];
    std::size_t size_;
};

}  // namespace qm
