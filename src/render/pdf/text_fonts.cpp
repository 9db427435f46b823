// See text_layer.h: the fonts.
#include "render/pdf/pdf_syntax.h"
#include "render/pdf/text_layer.h"

namespace qm::pdf {

namespace {

// Entries of a section of a character map.
constexpr std::size_t kMapEntries = 100;
// Of 256 letters each: memory for texts of no language is bounded.
constexpr std::size_t kMaxFonts = 200;

std::string HexByte(unsigned value) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    return {kDigits[value >> 4 & 15], kDigits[value & 15]};
}

std::string ToUnicode(const std::map<unsigned char, char32_t>& characters) {
    std::string map =
        "/CIDInit/ProcSet findresource begin 12 dict begin begincmap\n"
        "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
        "/CMapName/Texts def/CMapType 2 def\n"
        "1 begincodespacerange<00><FF>endcodespacerange\n";
    std::size_t left = characters.size();
    std::size_t section = 0;
    for (const auto& [code, character] : characters) {
        if (section == 0) {
            section = std::min(left, kMapEntries);
            map += std::to_string(section) + " beginbfchar\n";
        }
        map += '<' + HexByte(code) + "><" + Utf16Hex(character) + ">\n";
        --left;
        if (--section == 0) map += "endbfchar\n";
    }
    return map + "endcmap end end\n";
}

}  // namespace

TextFonts::Letter TextFonts::LetterOf(char32_t character) {
    if (character >= 32 && character < 127) {
        const Letter letter{0, static_cast<unsigned char>(character)};
        if (!ascii_[letter.code]) fonts_[0].characters[letter.code] = character;
        ascii_[letter.code] = true;
        return letter;
    }
    return OtherLetter(character);
}

TextFonts::Letter TextFonts::OtherLetter(char32_t character) {
    constexpr unsigned kCodes = 256;
    const auto known = letters_.find(character);
    if (known != letters_.end()) return known->second;
    if (nextCode_ == kCodes) {
        if (fonts_.size() == kMaxFonts) return LetterOf(U'?');
        fonts_.emplace_back();
        nextCode_ = 0;
    }
    const Letter letter{fonts_.size() - 1, static_cast<unsigned char>(nextCode_++)};
    fonts_[letter.font].characters[letter.code] = character;
    letters_[character] = letter;
    return letter;
}

ObjectNumber TextFonts::Object(PdfFile& file, std::size_t font) {
    ObjectNumber& object = fonts_[font].object;
    if (object == 0) object = file.NewObject();
    return object;
}

void TextFonts::Write(PdfFile& file) const {
    ObjectNumber glyph = 0;
    for (const Font& font : fonts_) {
        if (font.object == 0) continue;
        // All letters are one: its box, no ink. Some programs guess the size of a font's letters
        // from the width of its m, which is to be 0.6.
        if (glyph == 0) glyph = file.WriteStream("", "600 0 0 0 600 720 d1");
        std::string names;
        std::string widths;
        const unsigned first = font.characters.begin()->first;
        const unsigned last = font.characters.rbegin()->first;
        for (unsigned code = first; code <= last; ++code) {
            names += "/m";
            widths += "600 ";
        }
        const std::string number = std::to_string(&font - fonts_.data());
        const ObjectNumber descriptor =
            file.WriteObject("<</Type/FontDescriptor/FontName/Texts" + number +
                             "/Flags 4/FontBBox[0 0 600 720]/ItalicAngle 0/Ascent 720/Descent 0"
                             "/CapHeight 720/StemV 0>>");
        const ObjectNumber map = file.WriteStream("", ToUnicode(font.characters));
        std::string dictionary =
            "<</Type/Font/Subtype/Type3/FontMatrix[.001 0 0 .001 0 0]/FontBBox[0 0 600 720]"
            "/Resources<<>>/CharProcs<</m ";
        dictionary.append(Reference(glyph)).append(">>/FirstChar ").append(std::to_string(first));
        dictionary.append("/LastChar ").append(std::to_string(last));
        dictionary.append("/Widths[").append(widths).append("]/Encoding<</Differences[");
        dictionary.append(std::to_string(first)).append(names).append("]>>/FontDescriptor ");
        dictionary.append(Reference(descriptor)).append("/ToUnicode ").append(Reference(map));
        file.WriteObject(font.object, dictionary.append(">>"));
    }
}

}  // namespace qm::pdf
