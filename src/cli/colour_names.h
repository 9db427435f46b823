// ColourNamed: colours as people write them. Test: tests/cli/transcripts_test.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qm::cli {

// 0x00BBGGRR of "#rrggbb", "#rgb" or one of the commonest names of CSS, in whatever case; nothing
// for what is no colour.
std::optional<std::uint32_t> ColourNamed(std::string name);

std::vector<std::string> ColourNames();

}  // namespace qm::cli
