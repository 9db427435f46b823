#include "render/pdf/text_layer.h"

#include <algorithm>

#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

namespace {

constexpr std::size_t kMaxTexts = 30000;  // 3 MB
// Bytes of a string; longer texts take several.
constexpr std::size_t kStringBytes = 2000;

// The text's own x along its baseline, y up, in units of its letters, to the drawing.
Matrix TextMatrix(const TextPlace& place, std::size_t letters, bool backward) {
    const double sign = backward ? -1.0 : 1.0;
    const double across = place.length / (static_cast<double>(letters) * TextFonts::kAdvance);
    // PlaceOfText's y runs down.
    const Matrix& m = place.toDrawing;
    Matrix text{m.a * across * sign,
                m.b * across * sign,
                -m.c * place.fontSize * sign,
                -m.d * place.fontSize * sign,
                m.e,
                m.f};
    if (backward) {
        text.e += m.a * place.length - m.c * place.fontSize * TextFonts::kHeight;
        text.f += m.b * place.length - m.d * place.fontSize * TextFonts::kHeight;
    }
    return text;
}

}  // namespace

bool TextLayer::Full() const { return items_.size() >= kMaxTexts; }

void TextLayer::Add(const BoxI& box, std::string_view text, bool backward, std::int32_t layer) {
    if (!PlaceOfText(box, text).shown) return;
    Extent extent;
    const Matrix& m = frame_.toSheet;
    for (const PointI corner : {box.a, box.b}) {
        extent.Add(m.a * corner.x + m.c * corner.y + m.e, m.b * corner.x + m.d * corner.y + m.f);
    }
    items_.push_back({box, std::string(text), layer, backward, static_cast<float>(extent.minX),
                      static_cast<float>(extent.minY), static_cast<float>(extent.maxY)});
}

// A line of texts: each overlaps the tallest before it by half of the lower of both.
std::vector<TextLayer::Item>::iterator TextLayer::LineEnd(std::vector<Item>::iterator line,
                                                          std::vector<Item>::iterator end) {
    const Item* tallest = &*line;
    const auto next = std::find_if(line + 1, end, [&](const Item& item) {
        const float overlap =
            std::min(item.bottom, tallest->bottom) - std::max(item.top, tallest->top);
        if (2.0F * overlap < std::min(item.Height(), tallest->Height())) return true;
        if (item.Height() > tallest->Height()) tallest = &item;
        return false;
    });
    return next;
}

void TextLayer::Sort() {
    std::stable_sort(items_.begin(), items_.end(),
                     [](const Item& a, const Item& b) { return a.top < b.top; });
    for (auto line = items_.begin(); line != items_.end();) {
        const auto end = LineEnd(line, items_.end());
        std::stable_sort(line, end, [](const Item& a, const Item& b) { return a.left < b.left; });
        line = end;
    }
}

void TextLayer::WriteText(const Item& item, PdfFile& file, ContentStream& out,
                          PageResources& resources) {
    const std::u32string characters = CodePoints(item.text);
    if (characters.empty()) return;
    Matrix matrix = TextMatrix(PlaceOfText(item.box, item.text), characters.size(), item.backward);
    matrix.e -= origin_.x;
    matrix.f -= origin_.y;
    out << "BT\n";
    for (const double each : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f}) {
        out.Tenths(each);
    }
    out << "Tm\n";
    std::size_t font = SIZE_MAX;
    std::string shown;
    const auto show = [&] {
        if (!shown.empty()) out << "(" << shown << ")Tj\n";
        shown.clear();
    };
    for (const char32_t character : characters) {
        const TextFonts::Letter letter = fonts_.LetterOf(character < 32 ? U' ' : character);
        if (letter.font != font || shown.size() > kStringBytes) show();
        if (letter.font != font) {
            font = letter.font;
            const std::string name = "F" + std::to_string(font);
            resources.Add(PageResources::kFont, name, fonts_.Object(file, font));
            out << "/" << name << " 1 Tf\n";
        }
        const char code = static_cast<char>(letter.code);
        if (code == '(' || code == ')' || code == '\\' || code == '\r') shown += '\\';
        shown += code == '\r' ? 'r' : code;
    }
    show();
    out << "ET\n";
}

}  // namespace qm::pdf
