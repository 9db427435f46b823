// PaperNamed: sheets of paper by name or size. Test: tests/cli/transcripts_test.cpp.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "render/page_writers.h"

namespace qm::cli {

// "a0" to "a5", "letter", "legal", "tabloid", in whatever case, higher than wide and free to turn;
// or millimetres as "297x210", which lie as they stand. Nothing for other names and for sides
// outside 1 mm to 100 m.
std::optional<Paper> PaperNamed(std::string name);

// Those of papers, lower case.
std::vector<std::string> PaperNames();

}  // namespace qm::cli
