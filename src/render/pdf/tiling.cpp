#include "render/pdf/tiling.h"

#include "render/fill_pattern.h"
#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

namespace {

// Viewers take time for each tile, so small patterns are repeated up to this many dots a side.
constexpr std::int32_t kTileSide = 64;

std::string Number(std::int32_t number) { return std::to_string(number); }

// The dots of a tile, row by row from the top, ink as clear bits.
std::string Stencil(const FillPattern& pattern, std::int32_t across, std::int32_t down) {
    const std::int32_t width = across * pattern.width;
    std::string bits;
    for (std::int32_t y = 0; y < down * pattern.height; ++y) {
        std::string row(static_cast<std::size_t>((width + 7) / 8), '\xFF');
        for (std::int32_t x = 0; x < width; ++x) {
            if (!IsInk(pattern, x % pattern.width, y % pattern.height)) continue;
            char& byte = row[static_cast<std::size_t>(x / 8)];
            byte = static_cast<char>(byte & ~(0x80 >> x % 8));
        }
        bits += row;
    }
    return bits;
}

}  // namespace

std::size_t Tilings::NumberOf(const FillPattern& pattern) {
    const auto [known, isNew] = numbers_.try_emplace(
        {pattern.width, pattern.height, pattern.bits.data}, numbers_.size() + 1);
    if (!isNew) return known->second;
    const std::int32_t across = std::max(1, kTileSide / pattern.width);
    const std::int32_t down = std::max(1, kTileSide / pattern.height);
    const std::string width = Number(across * pattern.width);
    const std::string height = Number(down * pattern.height);
    const std::string content = width + " 0 0 -" + height + " 0 " + height + " cm\nBI/W " + width +
                                "/H " + height + "/IM true/BPC 1\nID " +
                                Stencil(pattern, across, down) + "\nEI\n";
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
