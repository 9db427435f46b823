// See fill_pattern.h.
#include "render/fill_pattern.h"

namespace qm {

namespace {

constexpr std::int32_t kMaxPatternSide = 255;

}  // namespace

bool IsDrawable(const FillPattern& pattern) {
    if (pattern.width < 1 || pattern.width > kMaxPatternSide || pattern.height < 1 ||
        pattern.height > kMaxPatternSide) {
        return false;
    }
    return pattern.bits.size >= pattern.RowBytes() * static_cast<std::size_t>(pattern.height);
}

TextPlace PlaceOfText(const BoxI& box, std::string_view text) {
    const double width = double{1} * box.b.x - box.a.x;
    const double height = double{1} * box.b.y - box.a.y;
    if (width < 0.0 || height < 0.0 || (width == 0.0 && height == 0.0) || text.empty()) return {};
    const double left = box.a.x;
    const double bottom = box.a.y;
    if (height > width && text.size() > 1) {
        const Matrix upward{0.0, 1.0, 1.0, 0.0, static_cast<double>(box.b.x), bottom};
        return {true, upward, (width > 0.0 ? width : height / 10.0) / kCapitalHeight, height};
    }
    const Matrix upright{1.0, 0.0, 0.0, -1.0, left, bottom};
    return {true, upright, (height > 0.0 ? height : width / 10.0) / kCapitalHeight,
            width > 0.0 ? width : height / 2.0};
}

bool PictureIsClear(std::int32_t rasterOperation) {
    constexpr std::int32_t kCopySource = 204;
    constexpr std::int32_t kCopyPattern = 240;
    return rasterOperation != kCopySource && rasterOperation != kCopyPattern;
}

}  // namespace qm
