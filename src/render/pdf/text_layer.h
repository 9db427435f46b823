// TextLayer: the searchable texts of a document: invisible, over the strokes they stand for, in
// reading order (lines from top to bottom, each from left to right).
//
// Texts are shown with Type 3 fonts of our own whose letters mark a box and no ink, so that no font
// is embedded and every Unicode character has a letter (ISO 32000-1, 9.6.5 and 9.10.3). Test:
// tests/render/pdf/text_layer_test.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "render/fill_pattern.h"
#include "render/pdf/content_stream.h"
#include "render/pdf/page_resources.h"
#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

// Letters by the font and the code that show them.
class TextFonts {
  public:
    struct Letter {
        std::size_t font = 0;
        unsigned char code = 0;
    };
    Letter LetterOf(char32_t character);
    // The font's object, to be written by Write.
    ObjectNumber Object(PdfFile& file, std::size_t font);
    void Write(PdfFile& file) const;

    static constexpr double kAdvance = 0.6;  // of the font size
    static constexpr double kHeight = 0.72;

  private:
    struct Font {
        ObjectNumber object = 0;
        std::map<unsigned char, char32_t> characters;
    };
    Letter OtherLetter(char32_t character);

    // ASCII has its own codes in the first font; all else is numbered as it comes.
    std::vector<Font> fonts_{1};
    std::array<bool, 128> ascii_{};
    unsigned nextCode_ = 128;  // of the last font
    std::map<char32_t, Letter> letters_;
};

class TextLayer {
  public:
    TextLayer(TextFonts& fonts, const PageFrame& frame, PointI origin)
        : fonts_(fonts), frame_(frame), origin_(origin) {}

    // Remembers a text. `backward`: its letters run to the left or downward.
    void Add(const BoxI& box, std::string_view text, bool backward, std::int32_t layer);
    // Memory is bounded: a full layer is to be written before more is added.
    bool Full() const;
    // Writes and forgets the texts. `enterLayer`: called before the texts of a layer.
    template <typename EnterLayer>
    void Write(PdfFile& file, ContentStream& out, PageResources& resources,
               const EnterLayer& enterLayer) {
        const Item* last = nullptr;
        for (const Place& place : Sorted()) {
            const Item& item = items_[place.item];
            const std::u32string characters = CodePoints(item.text);
            if (characters.empty()) continue;
            if (last == nullptr || item.layer != last->layer) {
                if (last != nullptr) out << "ET\n";
                enterLayer(item.layer);
                out << "BT\n";
            }
            last = &item;
            WriteText(item, characters, file, out, resources);
        }
        if (last != nullptr) out << "ET\n";
        items_.clear();
        font_.reset();
    }

  private:
    // On the sheet, y down. Sorted without its text, which is elsewhere in memory.
    struct Place {
        float left = 0.0F;
        float top = 0.0F;
        float bottom = 0.0F;
        std::uint32_t item = 0;  // in items_

        float Height() const { return bottom - top; }
    };
    struct Item {
        BoxI box;
        std::string text;
        std::int32_t layer = 0;
        bool backward = false;
        Place place;
    };

    using Order = std::vector<Place>;

    Order Sorted() const;
    static Order::iterator LineEnd(Order::iterator line, Order::iterator end);
    void WriteText(const Item& item, const std::u32string& characters, PdfFile& file,
                   ContentStream& out, PageResources& resources);

    TextFonts& fonts_;
    const PageFrame& frame_;
    PointI origin_;
    std::vector<Item> items_;
    std::optional<std::size_t> font_;  // that holds while texts are written
};

}  // namespace qm::pdf
