#include "render/pdf/tiling.h"

#include "render/fill_pattern.h"
#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

namespace {

// Viewers take time for each tile, so small patterns are repeated up to this many dots a side.
constexpr std::int32_t kTileSide = 64;

std::string Number(std::int32_t number) { return std::to_string(number); }

}  // namespace

std::size_t Tilings::NumberOf(const FillPattern& pattern) {
    const auto [known, isNew] = numbers_.try_emplace(
        {pattern.width, pattern.height, pattern.bits.data}, numbers_.size() + 1);
    if (!isNew) return known->second;
    const std::int32_t across = std::max(1, kTileSide / pattern.width);
    const std::int32_t down = std::max(1, kTileSide / pattern.height);
    std::string content;
    for (std::int32_t row = 0; row < down; ++row) {
        for (std::int32_t column = 0; column < across; ++column) {
            ForEachInkRun(pattern, [&](std::int32_t x, std::int32_t y, std::int32_t length) {
                content += Number(column * pattern.width + x) + ' ' +
                           Number(row * pattern.height + y) + ' ' + Number(length) + " 1 re\n";
            });
        }
    }
    if (!content.empty()) content += "f";
    const std::string width = Number(across * pattern.width);
    const std::string height = Number(down * pattern.height);
    // Rows of a pattern run down, the drawing's y up.
    const Matrix& m = toPage_;
    const Matrix matrix{m.a * kPatternDotUnits,
                        m.b * kPatternDotUnits,
                        -m.c * kPatternDotUnits,
                        -m.d * kPatternDotUnits,
                        m.e,
                        m.f};
    const ObjectNumber object =
        file_.WriteStream("/Type/Pattern/PatternType 1/PaintType 2/TilingType 1/BBox[0 0 " + width +
                              ' ' + height + "]/XStep " + width + "/YStep " + height + "/Matrix[" +
                              MatrixText(matrix) + "]/Resources<<>>",
                          content);
    resources_.Add(PageResources::kPattern, "P" + std::to_string(known->second), object);
    return known->second;
}

}  // namespace qm::pdf
