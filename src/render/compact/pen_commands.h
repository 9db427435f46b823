// PenCommands: the commands that make a plotter draw in a style, as few as its state asks for.
// Test: tests/render/compact_writer_test.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/drawing_style.h"

namespace qm::compact {

class PenCommands {
  public:
    // What a reader forgets where a page begins.
    void BeginPage() { sent_ = {}; }
    // The commands for lines, or for areas, of `style`; often none.
    std::string For(const DrawingStyle& style, bool filled);

  private:
    // What pages begin with in a document that reads the plot.
    struct Sent {
        std::optional<std::int32_t> pen;
        bool masks = false;
        std::int32_t attributes = 0;
        std::int32_t lineStyle = 0;
        std::vector<std::int32_t> dash;
        std::int32_t pattern = -1;  // of areas; -1: solid
    };
    struct Pen {
        std::optional<std::uint32_t> colour;
        std::optional<std::int32_t> width;
    };

    void SelectPen(const DrawingStyle& style, bool filled, std::string& commands);
    void SelectLine(const DrawingStyle& style, std::string& commands);

    Sent sent_;
    std::array<Pen, 256> pens_;  // a pen keeps its colour and width from page to page
};

}  // namespace qm::compact
