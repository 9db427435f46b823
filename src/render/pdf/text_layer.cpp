#include "render/pdf/text_layer.h"

#include <algorithm>

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
    const Place place{static_cast<float>(extent.minX), static_cast<float>(extent.minY),
                      static_cast<float>(extent.maxY), static_cast<std::uint32_t>(items_.size())};
    items_.push_back({box, std::string(text), layer, backward, place});
}

// A line of texts: each overlaps the tallest before it by half of the lower of both.
TextLayer::Order::iterator TextLayer::LineEnd(Order::iterator line, Order::iterator end) {
    Place tallest = *line;
    return std::find_if(line + 1, end, [&](const Place& place) {
        const float overlap =
            std::min(place.bottom, tallest.bottom) - std::max(place.top, tallest.top);
        if (2.0F * overlap < std::min(place.Height(), tallest.Height())) return true;
        if (place.Height() > tallest.Height()) tallest = place;
        return false;
    });
}

TextLayer::Order TextLayer::Sorted() const {
    Order order;
    order.reserve(items_.size());
    for (const Item& item : items_) order.push_back(item.place);
    std::stable_sort(order.begin(), order.end(),
                     [](const Place& a, const Place& b) { return a.top < b.top; });
    for (auto line = order.begin(); line != order.end();) {
        const auto end = LineEnd(line, order.end());
        std::stable_sort(line, end, [](const Place& a, const Place& b) { return a.left < b.left; });
        line = end;
    }
    return order;
}

void TextLayer::WriteText(const Item& item, const std::u32string& characters, PdfFile& file,
                          ContentStream& out, PageResources& resources) {
    Matrix matrix = TextMatrix(PlaceOfText(item.box, item.text), characters.size(), item.backward);
    matrix.e -= origin_.x;
    matrix.f -= origin_.y;
    for (const double each : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f}) {
        out.Tenths(each);
    }
    out << "Tm\n";
    std::string shown;
    const auto show = [&] {
        if (!shown.empty()) out << "(" << shown << ")Tj\n";
        shown.clear();
    };
    for (const char32_t character : characters) {
        const TextFonts::Letter letter = fonts_.LetterOf(character < 32 ? U' ' : character);
        if (letter.font != font_ || shown.size() > kStringBytes) show();
        if (letter.font != font_) {
            font_ = letter.font;
            const std::string name = "F" + std::to_string(letter.font);
            resources.Add(PageResources::kFont, name, fonts_.Object(file, letter.font));
            out << "/" << name << " 1 Tf\n";
        }
        const char code = static_cast<char>(letter.code);
        if (code == '(' || code == ')' || code == '\\' || code == '\r') shown += '\\';
        shown += code == '\r' ? 'r' : code;
    }
    show();
}

}  // namespace qm::pdf
