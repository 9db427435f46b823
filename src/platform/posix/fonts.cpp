#include "qmfilter/portable/fonts.h"

#include <strings.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

namespace {

// In units of the em square, which all of these divide into 2048.
struct Face {
    const char* name;
    LONG ascent;
    LONG descent;
    LONG averageWidth;
};

// clang-format off
constexpr Face kFaces[] = {
    {"Arial",           1854, 434,  904},  // the first stands for unknown faces
    {"Times New Roman", 1825, 443,  821},
    {"Courier New",     1705, 615, 1229},
};
// clang-format on
constexpr LONG kEm = 2048;
constexpr LONG kDefaultHeight = 16;
constexpr LONG kNormalWeight = 400;

struct Font {
    const Face* face;
    LONG height;
    LONG weight;
};

struct Context {
    Font defaultFont;
    Font* selected;
};

LONG Rounded(std::int64_t numerator, std::int64_t denominator) noexcept {
    const std::int64_t value = (2 * numerator + denominator) / (2 * denominator);
    return static_cast<LONG>(std::min<std::int64_t>(value, std::numeric_limits<LONG>::max() / 4));
}

// Cell heights in pixels for a requested lfHeight.
TEXTMETRICA Measure(const Font& font) noexcept {
    const Face& face = *font.face;
    TEXTMETRICA metrics = {};
    std::int64_t em = -static_cast<std::int64_t>(font.height);
    if (font.height < 0) {
        metrics.tmAscent = Rounded(em * face.ascent, kEm);
        metrics.tmDescent = Rounded(em * face.descent, kEm);
    } else {
        const std::int64_t cell = font.height == 0 ? kDefaultHeight : font.height;
        em = cell * kEm / (face.ascent + face.descent);
        metrics.tmAscent = Rounded(cell * face.ascent, face.ascent + face.descent);
        metrics.tmDescent = static_cast<LONG>(cell) - metrics.tmAscent;
    }
    metrics.tmHeight = metrics.tmAscent + metrics.tmDescent;
    metrics.tmAveCharWidth = Rounded(em * face.averageWidth, kEm);
    metrics.tmMaxCharWidth = metrics.tmAveCharWidth;
    metrics.tmWeight = font.weight;
    metrics.tmDigitizedAspectX = metrics.tmDigitizedAspectY = 96;
    metrics.tmLastChar = 255;
    metrics.tmBreakChar = ' ';
    return metrics;
}

const Face& FaceOf(const CHAR (&name)[LF_FACESIZE]) noexcept {
    const auto* found = std::find_if(std::begin(kFaces), std::end(kFaces), [&](const Face& face) {
        return strncasecmp(face.name, name, LF_FACESIZE) == 0;
    });
    return found == std::end(kFaces) ? kFaces[0] : *found;
}

}  // namespace

HDC GetDC(HWND) noexcept {
    auto* context = new (std::nothrow) Context{{&kFaces[0], 0, kNormalWeight}, nullptr};
    if (context != nullptr) context->selected = &context->defaultFont;
    return context;
}

int ReleaseDC(HWND, HDC context) noexcept {
    delete static_cast<Context*>(context);
    return context != nullptr ? 1 : 0;
}

HFONT CreateFontIndirectA(const LOGFONTA* description) noexcept {
    if (description == nullptr) return nullptr;
    return new (std::nothrow)
        Font{&FaceOf(description->lfFaceName), description->lfHeight, description->lfWeight};
}

HGDIOBJ SelectObject(HDC context, HGDIOBJ font) noexcept {
    if (context == nullptr || font == nullptr) return nullptr;
    auto& device = *static_cast<Context*>(context);
    return std::exchange(device.selected, static_cast<Font*>(font));
}

BOOL DeleteObject(HGDIOBJ font) noexcept {
    delete static_cast<Font*>(font);
    return font != nullptr ? TRUE : FALSE;
}

BOOL GetTextExtentPoint32A(HDC context, LPCSTR, int length, SIZE* size) noexcept {
    TEXTMETRICA metrics = {};
    if (size == nullptr || length < 0 || GetTextMetricsA(context, &metrics) == FALSE) return FALSE;
    size->cx = Rounded(static_cast<std::int64_t>(metrics.tmAveCharWidth) * length, 1);
    size->cy = metrics.tmHeight;
    return TRUE;
}

BOOL GetTextMetricsA(HDC context, TEXTMETRICA* metrics) noexcept {
    if (context == nullptr || metrics == nullptr) return FALSE;
    *metrics = Measure(*static_cast<Context*>(context)->selected);
    return TRUE;
}
