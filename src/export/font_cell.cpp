// See font_cell.h.
#include "export/font_cell.h"

#include <cstring>

namespace qm {
namespace {

// The screen's device context with a font selected, both given back at the end in the order the
// system asks for.
class MeasuringContext {
  public:
    explicit MeasuringContext(const LOGFONTA& description) noexcept
        : context_(GetDC(nullptr)), font_(CreateFontIndirectA(&description)) {
        if (context_ != nullptr && font_ != nullptr) previous_ = SelectObject(context_, font_);
    }
    ~MeasuringContext() {
        if (previous_ != nullptr) SelectObject(context_, previous_);
        if (font_ != nullptr) DeleteObject(font_);
        if (context_ != nullptr) ReleaseDC(nullptr, context_);
    }
    MeasuringContext(const MeasuringContext&) = delete;
    MeasuringContext& operator=(const MeasuringContext&) = delete;

    std::optional<LONG> HeightOfA() const noexcept {
        SIZE extent = {};
        if (previous_ == nullptr || !GetTextExtentPoint32A(context_, "A", 1, &extent))
            return std::nullopt;
        return extent.cy;
    }

  private:
    HDC context_;
    HFONT font_;
    HGDIOBJ previous_ = nullptr;
};

}  // namespace

FontCell MeasureFont(const BYTE* description) noexcept {
    LOGFONTA font;
    std::memcpy(&font, description, sizeof(font));
    FontCell cell;
    cell.escapement = font.lfEscapement;
    font.lfEscapement = 0;
    cell.height = MeasuringContext(font).HeightOfA();
    return cell;
}

}  // namespace qm
