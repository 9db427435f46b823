// Bytes as text, for tables of bytes: "0102 07*3" is 01 02 07 07 07.
#pragma once

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace qm {

using Bytes = std::vector<std::uint8_t>;

// Blanks stand between groups of digits; "*N" repeats the last byte of a group until it stands
// there N times.
inline Bytes FromHex(const std::string& text) {
    Bytes bytes;
    std::istringstream groups(text);
    for (std::string group; groups >> group;) {
        const std::size_t star = std::min(group.find('*'), group.size());
        for (std::size_t i = 0; i + 1 < star; i += 2) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(group.substr(i, 2), nullptr, 16)));
        }
        if (star == group.size()) continue;
        const auto more = static_cast<std::size_t>(std::stoi(group.substr(star + 1)) - 1);
        bytes.insert(bytes.end(), more, std::uint8_t{bytes.back()});
    }
    return bytes;
}

inline std::string ToHex(const std::uint8_t* bytes, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += "0123456789ABCDEF"[bytes[i] >> 4];
        text += "0123456789ABCDEF"[bytes[i] & 15];
    }
    return text;
}
inline std::string ToHex(const Bytes& bytes) { return ToHex(bytes.data(), bytes.size()); }

}  // namespace qm
