#include "render/pdf/picture.h"

#include <array>
#include <string>
#include <vector>

#include "common/colour.h"

namespace qm::pdf {

namespace {

constexpr std::int32_t kRowsBetweenCheckpoints = 64;
// The PNG filter that stores differences to the dot on the left.
constexpr std::uint8_t kSubFilter = 1;

// The colours of an indexed picture; entries behind the end of its table are black.
struct Palette {
    std::uint32_t count = 0;
    std::array<Colour, 256> colours;
    std::optional<std::uint32_t> clear;     // the entry that stands for clear white
    std::array<std::uint8_t, 256> bytes{};  // of a row, with all whites made that entry
    bool changes = false;                   // `bytes` is not what it was
};

std::uint8_t ReplaceWhites(unsigned byte, int bits, const Palette& palette) {
    const unsigned mask = (1U << static_cast<unsigned>(bits)) - 1;
    unsigned result = 0;
    for (unsigned shift = 0; shift < 8; shift += static_cast<unsigned>(bits)) {
        const unsigned index = byte >> shift & mask;
        const bool white = palette.colours[index] == kWhiteColour;
        result |= (white ? *palette.clear : index) << shift;
    }
    return static_cast<std::uint8_t>(result);
}

Palette PaletteOf(const PackedBitmapView& picture, bool whiteIsClear) {
    Palette palette;
    palette.count = 1U << static_cast<unsigned>(picture.Bits());
    for (std::uint32_t i = 0; i < palette.count; ++i) {
        const PaletteEntry entry = picture.Colour(i);
        palette.colours[i] = {entry.red, entry.green, entry.blue};
        const bool clear = whiteIsClear && palette.colours[i] == kWhiteColour;
        if (clear && !palette.clear) palette.clear = i;
    }
    // A mask names one range of entries.
    for (unsigned byte = 0; byte < 256; ++byte) {
        palette.bytes[byte] = palette.clear ? ReplaceWhites(byte, picture.Bits(), palette)
                                            : static_cast<std::uint8_t>(byte);
        palette.changes = palette.changes || palette.bytes[byte] != byte;
    }
    return palette;
}

std::string HexColours(const Palette& palette) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "<";
    for (std::uint32_t i = 0; i < palette.count; ++i) {
        const Colour colour = palette.colours[i];
        for (const std::uint8_t part : {colour.red, colour.green, colour.blue}) {
            text += kDigits[part >> 4];
            text += kDigits[part & 15];
        }
    }
    return text + '>';
}

std::string Size(const PackedBitmapView& picture) {
    return "/Type/XObject/Subtype/Image/Width " + std::to_string(picture.Width()) + "/Height " +
           std::to_string(picture.Height());
}

template <typename WriteRow>
ObjectNumber WriteRows(const PackedBitmapView& picture, const std::string& entries,
                       const std::function<void()>& checkpoint, PdfFile& file,
                       const WriteRow& writeRow) {
    const ObjectNumber object = file.NewObject();
    file.BeginStream(object, entries);
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
        if (checkpoint && y % kRowsBetweenCheckpoints == 0) checkpoint();
        writeRow(y);
    }
    file.EndStream();
    return object;
}

PictureObject WriteIndexed(const PackedBitmapView& picture, bool whiteIsClear,
                           const std::function<void()>& checkpoint, PdfFile& file) {
    const Palette palette = PaletteOf(picture, whiteIsClear);
    std::string entries = Size(picture) + "/BitsPerComponent " + std::to_string(picture.Bits());
    PictureObject result;
    if (picture.Bits() == 1 && palette.clear && !palette.changes) {
        const std::uint32_t ink = 1 - *palette.clear;
        result.stencil = palette.colours[ink].ToBgr();
        // A stencil paints its dots of value 0.
        entries += ink == 0 ? "/ImageMask true" : "/ImageMask true/Decode[1 0]";
    } else {
        entries += "/ColorSpace[/Indexed/DeviceRGB " + std::to_string(palette.count - 1) +
                   HexColours(palette) + ']';
        if (palette.clear) {
            const std::string index = std::to_string(*palette.clear);
            entries += "/Mask[" + index + ' ' + index + ']';
        }
    }
    std::string changed(palette.changes ? picture.RowBytes() : 0, '\0');
    result.object = WriteRows(picture, entries, checkpoint, file, [&](std::int32_t y) {
        const std::uint8_t* const row = picture.RowFromTop(y);
        if (!palette.changes) {
            file.Append({reinterpret_cast<const char*>(row), picture.RowBytes()});
            return;
        }
        for (std::size_t i = 0; i < changed.size(); ++i) {
            changed[i] = static_cast<char>(palette.bytes[row[i]]);
        }
        file.Append(changed);
    });
    return result;
}

PictureObject WriteColours(const PackedBitmapView& picture, bool whiteIsClear,
                           const std::function<void()>& checkpoint, PdfFile& file) {
    const std::string entries = Size(picture) + "/BitsPerComponent 8/ColorSpace/DeviceRGB" +
                                (whiteIsClear ? "/Mask[255 255 255 255 255 255]" : "") +
                                "/DecodeParms<</Predictor 15/Colors 3/Columns " +
                                std::to_string(picture.Width()) + ">>";
    const std::size_t bytes = std::size_t{3} * static_cast<std::size_t>(picture.Width());
    std::vector<std::uint8_t> row(bytes);
    std::string filtered(bytes + 1, static_cast<char>(kSubFilter));
    const ObjectNumber object = WriteRows(picture, entries, checkpoint, file, [&](std::int32_t y) {
        picture.RowToRgb(y, row.data());
        const std::uint8_t* const from = row.data();  // which no character written can change
        char* const to = filtered.data() + 1;
        for (std::size_t i = 0; i < 3; ++i) to[i] = static_cast<char>(from[i]);
        for (std::size_t i = 3; i < bytes; ++i) to[i] = static_cast<char>(from[i] - from[i - 3]);
        file.Append(filtered);
    });
    return {object, std::nullopt};
}

}  // namespace

PictureObject WritePicture(const PackedBitmapView& picture, bool whiteIsClear,
                           const std::function<void()>& checkpoint, PdfFile& file) {
    const int bits = picture.Bits();
    const bool indexed = bits == 1 || bits == 2 || bits == 4 || bits == 8;
    return indexed ? WriteIndexed(picture, whiteIsClear, checkpoint, file)
                   : WriteColours(picture, whiteIsClear, checkpoint, file);
}

}  // namespace qm::pdf
