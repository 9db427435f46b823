// The parts of the viewer page that the build embeds (cmake/EmbedViewer.cmake makes their source
// from src/viewer/). Test: tests/render/viewer_test.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace qm {

using Sha256 = std::array<std::uint8_t, 32>;

struct ViewerProgram {
    // Text with {{title}}, {{policy}}, {{style}}, {{data}} and {{script}} in it.
    std::string_view page;
    std::string_view style;
    std::string_view script;
    Sha256 styleSha256;
    Sha256 scriptSha256;
};

ViewerProgram EmbeddedViewer();

}  // namespace qm
