#include "render/pdf/graphics_state.h"

#include <string>

#include "common/colour.h"
#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

namespace {

// Patterns longer than any plot writes are drawn solid: they would be written again and again.
constexpr std::size_t kMaxDashes = 256;

std::string Share(std::uint8_t component) { return Real(component / 255.0, 3) + ' '; }

const char* OperandOf(LineCap cap) {
    return cap == LineCap::kButt ? "0 J\n" : cap == LineCap::kRound ? "1 J\n" : "2 J\n";
}

}  // namespace

void GraphicsState::WriteColour(std::uint32_t colour, std::string_view grey, std::string_view rgb) {
    const Colour parts = Colour::FromBgr(colour);
    if (parts.red == parts.green && parts.green == parts.blue) {
        out_ << Share(parts.red) << grey;
    } else {
        out_ << Share(parts.red) << Share(parts.green) << Share(parts.blue) << rgb;
    }
}

void GraphicsState::WriteDashes() {
    std::string operands = "[";
    for (const double length : values_.dashes) operands += Real(length, 1) + ' ';
    if (!values_.dashes.empty()) operands.pop_back();
    out_ << operands << "] " << Real(values_.phase, 2) << " d\n";
}

void GraphicsState::SetStroke(const DrawingStyle& style, bool dot) {
    SetBlend(BlendOfDrawMode(style.drawMode));
    if (values_.stroke != style.drawColour) {
        values_.stroke = style.drawColour;
        WriteColour(style.drawColour, "G\n", "RG\n");
    }
    const double width = style.lineWidth > 0 ? style.lineWidth : hairline_;
    if (values_.width != width) {
        values_.width = width;
        out_ << Real(width, 2) << " w\n";
    }
    const LineCap cap = dot ? LineCap::kRound : CapOf(style.lineAttributes);
    if (values_.cap != cap) {
        values_.cap = cap;
        out_ << OperandOf(cap);
    }
    const LineJoin join = JoinOf(style.lineAttributes);
    if (values_.join != join) {
        values_.join = join;
        out_ << (join == LineJoin::kBevel ? "2 j\n" : "1 j\n");
    }
    std::vector<double> dashes;
    if (!dot && style.dashCount <= kMaxDashes) dashes = DashesOf(style);
    if (values_.dashes != dashes || values_.phase != 0.0) {
        values_.dashes.swap(dashes);
        values_.phase = 0.0;
        WriteDashes();
    }
}

void GraphicsState::SetDashPhase(double phase) {
    if (values_.phase == phase) return;
    values_.phase = phase;
    WriteDashes();
}

void GraphicsState::SetFill(std::uint32_t colour, std::size_t pattern) {
    if (values_.fill == colour && values_.pattern == pattern) return;
    if (pattern == 0) {
        WriteColour(colour, "g\n", "rg\n");
    } else {
        fills_ = true;
        const Colour parts = Colour::FromBgr(colour);
        if (values_.pattern == 0) out_ << "/C cs\n";
        out_ << Share(parts.red) << Share(parts.green) << Share(parts.blue) << "/P"
             << std::to_string(pattern) << " scn\n";
    }
    values_.fill = colour;
    values_.pattern = pattern;
}

void GraphicsState::SetBlend(Blend blend) {
    if (values_.blend == blend) return;
    values_.blend = blend;
    blends_ = true;
    switch (blend) {
        case Blend::kDarken:
            out_ << "/Darken gs\n";
            break;
        case Blend::kLighten:
            out_ << "/Lighten gs\n";
            break;
        case Blend::kDifference:
            out_ << "/Difference gs\n";
            break;
        default:
            out_ << "/Normal gs\n";
            break;
    }
}

void GraphicsState::Save() {
    out_ << "q\n";
    saved_ = values_;
}

void GraphicsState::Restore() {
    out_ << "Q\n";
    if (saved_) values_ = *saved_;
    saved_.reset();
}

}  // namespace qm::pdf
