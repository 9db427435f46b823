// See json.h.
#include "cli/json.h"

#include <cstdio>

#include "platform/text.h"

namespace qm::cli {

namespace {

bool IsSurrogate(wchar_t c) { return c >= 0xD800 && c <= 0xDFFF; }

void AppendEscape(std::string& out, wchar_t c) {
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04X", static_cast<unsigned>(c));
    out += text;
}

}  // namespace

std::string JsonText(std::string_view utf8) {
    std::string out = "\"";
    for (const wchar_t c : Utf8ToWide(utf8)) {
        if (c == L'"' || c == L'\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 32 || c == 127 || IsSurrogate(c)) {
            AppendEscape(out, c);
        } else {
            out += WideToUtf8({&c, 1});
        }
    }
    return out + '"';
}

std::string JsonOfError(const std::string& file, const ToolError& error) {
    return "{\"file\":" + JsonText(file) + ",\"error\":" + JsonText(error.what()) +
           ",\"status\":" + std::to_string(error.Status()) + '}';
}

Option JsonOption(bool& json) {
    return Flag("json", 0, "For programs: a JSON object a file, a line each", json);
}

}  // namespace qm::cli
