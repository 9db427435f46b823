// See replay_line.h.
#include "replay/replay_line.h"

#include <charconv>
#include <system_error>

#include "platform/text.h"

namespace qm {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// The byte of two hexadecimal digits at `at`, or -1.
int HexByte(std::string_view text, std::size_t at) {
    if (at + 1 >= text.size()) return -1;
    const int high = HexDigit(text[at]);
    const int low = HexDigit(text[at + 1]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

// Reads a quoted string whose opening quote is at `at`, and moves `at` behind the closing one.
ScriptValue ParseQuoted(std::string_view line, std::size_t& at) {
    ScriptValue value;
    value.quoted = true;
    std::string plain;
    for (++at; at < line.size() && line[at] != '"'; ++at) {
        if (line[at] != '\\') {
            plain += line[at];
            continue;
        }
        const char escaped = ++at < line.size() ? line[at] : '\0';
        if (escaped == '"' || escaped == '\\') {
            plain += escaped;
        } else if (const int byte = HexByte(line, at + 1); escaped == 'x' && byte >= 0) {
            value.wide += Utf8ToWide(plain);
            plain.clear();
            value.wide += static_cast<wchar_t>(byte);
            at += 2;
        } else {
            throw ScriptError("a backslash in a string stands before \", \\ or xHH");
        }
    }
    if (at >= line.size()) throw ScriptError("the closing quote of a string is missing");
    ++at;
    value.wide += Utf8ToWide(plain);
    value.text = WideToUtf8(value.wide);
    return value;
}

bool IsReal(std::string_view text) {
    const bool hexadecimal = text.substr(0, 2) == "0x";
    return !hexadecimal && text.find_first_of(".en") != std::string_view::npos;
}

template <typename Number>
bool ParseAll(std::string_view text, Number& number) noexcept {
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end;
}

bool ParseNumber(std::string_view text, LONG& number) noexcept {
    if (text.substr(0, 2) != "0x") return ParseAll(text, number);
    std::uint32_t bits = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data() + 2, end, bits, 16);
    number = static_cast<LONG>(bits);
    return parsed.ec == std::errc() && parsed.ptr == end;
}

bool ParseNumber(std::string_view text, double& number) noexcept { return ParseAll(text, number); }

}  // namespace

ScriptLine ParseLine(std::string_view text, int number) {
    ScriptLine line;
    line.number = number;
    for (std::size_t at = 0; at < text.size() && text[at] != '#';) {
        if (IsBlank(text[at])) {
            ++at;
        } else if (text[at] == '"') {
            line.values.push_back(ParseQuoted(text, at));
            if (at < text.size() && !IsBlank(text[at]) && text[at] != '#')
                throw ScriptError("a blank is missing behind a string");
        } else {
            const std::size_t start = at;
            while (at < text.size() && !IsBlank(text[at]) && text[at] != '#' && text[at] != '"')
                ++at;
            line.values.push_back({std::string(text.substr(start, at - start)), {}, false});
        }
    }
    return line;
}

void Arguments::Fail(std::string_view expected) const {
    std::string message(usage_);
    message += ": ";
    message += expected;
    message += " expected, ";
    if (next_ < values_.size()) {
        message += "\"" + values_[next_].text + "\" found";
    } else {
        message += "the line ends";
    }
    throw ScriptError(message);
}

const ScriptValue& Arguments::Next(std::string_view expected) {
    if (next_ >= values_.size()) Fail(expected);
    return values_[next_++];
}

void Arguments::End() const {
    if (next_ < values_.size()) Fail("the end of the line");
}

LONG Arguments::Integer() {
    LONG number = 0;
    if (Left() == 0 || values_[next_].quoted || !ParseNumber(values_[next_].text, number))
        Fail("a 32-bit integer");
    ++next_;
    return number;
}

double Arguments::Real() {
    double number = 0;
    if (Left() == 0 || values_[next_].quoted || !ParseNumber(values_[next_].text, number))
        Fail("a number");
    ++next_;
    return number;
}

bool Arguments::Boolean() {
    if (Take("true") || Take("1")) return true;
    if (Take("false") || Take("0")) return false;
    Fail("true or false");
}

Bstr Arguments::Text() {
    if (Left() == 0 || !values_[next_].quoted) Fail("a string in quotes");
    return Bstr(values_[next_++].wide);
}

std::string Arguments::Word() { return Next("a name").text; }

std::vector<std::uint8_t> Arguments::Hex(std::size_t least) {
    std::vector<std::uint8_t> bytes;
    if (Left() > 0) {
        const std::string& digits = values_[next_].text;
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            const int byte = HexByte(digits, i);
            if (byte < 0) Fail("pairs of hexadecimal digits");
            bytes.push_back(static_cast<std::uint8_t>(byte));
        }
    }
    if (bytes.size() < least) Fail("at least " + std::to_string(least) + " hexadecimal bytes");
    if (Left() > 0) ++next_;
    return bytes;
}

Variant Arguments::Value() {
    if (Left() == 0) return {};
    if (values_[next_].quoted) return Variant::Text(values_[next_++].wide);
    if (Take("true")) return Variant::Boolean(true);
    if (Take("false")) return Variant::Boolean(false);
    if (IsReal(values_[next_].text)) return Variant::Double(Real());
    return Variant::Integer(Integer());
}

bool Arguments::Take(std::string_view word) noexcept {
    if (Left() == 0 || values_[next_].quoted || values_[next_].text != word) return false;
    ++next_;
    return true;
}

template <typename Number>
std::vector<Number> Arguments::Points() {
    if (!Take(":")) Fail("a colon");
    std::vector<Number> numbers;
    for (; Left() > 0; ++next_) {
        const std::string_view text = values_[next_].text;
        const std::size_t comma = text.find(',');
        Number x = 0;
        Number y = 0;
        if (values_[next_].quoted || comma == std::string_view::npos ||
            !ParseNumber(text.substr(0, comma), x) || !ParseNumber(text.substr(comma + 1), y))
            Fail("a point X,Y");
        numbers.push_back(x);
        numbers.push_back(y);
    }
    return numbers;
}

template <typename Number>
std::vector<Number> Arguments::Points(LONG count) {
    // No points: nor need there be a colon.
    if (count <= 0 && Left() == 0) return {};
    std::vector<Number> numbers = Points<Number>();
    const auto wanted = count > 0 ? static_cast<std::size_t>(count) : 0;
    if (numbers.size() / 2 != wanted)
        throw ScriptError(std::string(usage_) + ": " + std::to_string(wanted) +
                          " points expected, " + std::to_string(numbers.size() / 2) + " found");
    return numbers;
}

template std::vector<LONG> Arguments::Points<LONG>();
template std::vector<LONG> Arguments::Points<LONG>(LONG count);
template std::vector<double> Arguments::Points<double>();
template std::vector<double> Arguments::Points<double>(LONG count);

}  // namespace qm
