#include "render/png_writer.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "common/numbers.h"

namespace qm {

namespace {

constexpr int kLevel = 6;  // of zlib, for small files
// Of longer rows every seventh byte tells how they are best written.
constexpr std::size_t kBytesOfSample = 1024;
constexpr std::size_t kSampledStep = 7;
std::size_t StepOf(std::size_t rowBytes) { return rowBytes > kBytesOfSample ? kSampledStep : 1; }
// Compressors copy some 32 KB each time they are called.
constexpr std::size_t kBytesAtOnce = std::size_t{1} << 16;
constexpr double kInchesPerMetre = 1.0 / 0.0254;

std::string BigEndian(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16 & 0xFF),
            static_cast<char>(value >> 8 & 0xFF), static_cast<char>(value & 0xFF)};
}

bool IsWhite(PaletteEntry colour) {
    return colour.red == 255 && colour.green == 255 && colour.blue == 255;
}

const Bytef* AsBytes(std::string_view text) { return reinterpret_cast<const Bytef*>(text.data()); }

void WriteChunk(const char* type, std::string_view data, OutputSink& sink) {
    const std::string name(type);
    uLong check = crc32(0, AsBytes(name), 4);
    check = crc32(check, AsBytes(data), static_cast<uInt>(data.size()));
    sink.Write(BigEndian(static_cast<std::uint32_t>(data.size())) + name);
    sink.Write(data);
    sink.Write(BigEndian(static_cast<std::uint32_t>(check)));
}

void WritePalette(const PngHeader& header, OutputSink& sink) {
    if (header.palette.empty()) {
        if (header.whiteIsClear) WriteChunk("tRNS", std::string("\0\xff\0\xff\0\xff", 6), sink);
        return;
    }
    std::string colours;
    std::string alpha;
    for (const PaletteEntry entry : header.palette) {
        colours += {static_cast<char>(entry.red), static_cast<char>(entry.green),
                    static_cast<char>(entry.blue)};
        alpha += header.whiteIsClear && IsWhite(entry) ? '\0' : '\xff';
    }
    WriteChunk("PLTE", colours, sink);
    if (alpha.find('\0') != std::string::npos) WriteChunk("tRNS", alpha, sink);
}

void WriteTexts(const PngHeader& header, OutputSink& sink) {
    for (const auto& [keyword, text] : header.texts) {
        const bool isAscii = std::all_of(
            text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
        // Beyond ASCII: not compressed, no language, no translated keyword.
        std::string data = keyword;
        data.append(isAscii ? 1 : 5, '\0');
        data += text;
        WriteChunk(isAscii ? "tEXt" : "iTXt", data, sink);
    }
}

std::size_t BitsOfDot(const PngHeader& header) {
    const auto bits = static_cast<std::size_t>(header.bits);
    if (header.hasAlpha) return 4 * bits;
    return header.palette.empty() && !header.isGrey ? 3 * bits : bits;
}

}  // namespace

std::size_t PngRowBytes(const PngHeader& header) {
    return (static_cast<std::size_t>(header.width) * BitsOfDot(header) + 7) / 8;
}

void WritePngStart(const PngHeader& header, OutputSink& sink) {
    sink.Write("\x89PNG\r\n\x1a\n");
    char colourType = !header.palette.empty() ? 3 : (header.isGrey ? 0 : 2);
    if (header.hasAlpha) colourType = 6;
    std::string ihdr = BigEndian(static_cast<std::uint32_t>(header.width)) +
                       BigEndian(static_cast<std::uint32_t>(header.height));
    ihdr += static_cast<char>(header.bits);
    ihdr += colourType;
    ihdr.append(3, '\0');  // deflate, standard filters, not interlaced
    WriteChunk("IHDR", ihdr, sink);
    const auto metre = RoundToInt32(header.dotsPerInch * kInchesPerMetre);
    if (metre > 0) {
        const auto dots = static_cast<std::uint32_t>(metre);
        WriteChunk("pHYs", BigEndian(dots) + BigEndian(dots) + '\1', sink);
    }
    WriteTexts(header, sink);
    WritePalette(header, sink);
}

void WritePngEnd(OutputSink& sink) {
    WriteChunk("IEND", "", sink);  // not a null view: zlib would start the check sum afresh
}

PngRows::PngRows(const PngHeader& header, PngFilter filter, OutputSink& sink)
    : chunks_(sink),
      filter_(filter),
      rowBytes_(PngRowBytes(header)),
      dotBytes_(std::max<std::size_t>(BitsOfDot(header) / 8, 1)),
      filtered_(rowBytes_ + 1),
      deflater_(header.fast ? MakeFastDeflater(kLevel) : MakeZlibDeflater(kLevel)) {
    deflater_->Begin();
}

void PngRows::Chunks::Write(std::string_view bytes) { WriteChunk("IDAT", bytes, sink_); }

// Areas and lines compress best as they are; in shades that change from dot to dot the differences
// are smaller.
bool PngRows::Choose(const std::uint8_t* row) {
    if (filter_ != PngFilter::kAsFits) return filter_ == PngFilter::kLeft;
    std::size_t plain = 0;
    std::size_t differences = 0;
    const auto sizeOf = [](std::uint8_t value) { return std::min<unsigned>(value, 255U - value); };
    const std::size_t step = StepOf(rowBytes_);
    for (std::size_t i = dotBytes_; i < rowBytes_; i += step) {
        plain += sizeOf(row[i]);
        differences += sizeOf(static_cast<std::uint8_t>(row[i] - row[i - dotBytes_]));
    }
    return differences < plain;
}

// Where nearly every dot is unlike its neighbour, searching for repetitions takes three times as
// long and finds chance ones that cost more than they save.
void PngRows::AdaptToDensity() {
    constexpr std::size_t kRows = 16;
    if (++rows_ % kRows != 0) return;
    const bool isDense = changes_ > kRows * rowBytes_ / 2;
    changes_ = 0;
    if (isDense == isDense_) return;
    isDense_ = isDense;
    Deflate();
    deflater_->SetDense(isDense, chunks_);
}

void PngRows::Write(const std::uint8_t* row) {
    std::uint8_t* const target = filtered_.data() + 1;
    // Paper is mostly rows like the one before.
    const bool again = rows_ > 0 && filtered_[0] == 0 && std::memcmp(row, target, rowBytes_) == 0;
    if (!again) Filter(row);
    changes_ += changesOfRow_;
    ready_.append(reinterpret_cast<const char*>(filtered_.data()), filtered_.size());
    if (ready_.size() >= kBytesAtOnce) Deflate();
    AdaptToDensity();
}

void PngRows::Deflate() {
    deflater_->Write(ready_, chunks_);
    ready_.clear();
}

void PngRows::Filter(const std::uint8_t* row) {
    std::uint8_t* const target = filtered_.data() + 1;
    const bool left = Choose(row);
    filtered_[0] = left ? 1 : 0;
    // Members might change with each byte that is written, as far as a compiler knows.
    const std::size_t bytes = rowBytes_;
    const std::size_t dotBytes = dotBytes_;
    std::copy(row, row + (left ? dotBytes : bytes), target);
    for (std::size_t i = dotBytes; left && i < bytes; ++i) {
        target[i] = static_cast<std::uint8_t>(row[i] - row[i - dotBytes]);
    }
    changesOfRow_ = 0;
    const std::size_t step = StepOf(rowBytes_);
    for (std::size_t i = dotBytes_; i < rowBytes_; i += step) {
        changesOfRow_ += row[i] != row[i - dotBytes_] ? step : 0;
    }
}

void PngRows::Finish() {
    Deflate();
    deflater_->End(chunks_);
}

// Indexed pictures compress best as they are, true colours as differences to the left.
PngWriter::PngWriter(const PngHeader& header, OutputSink& sink)
    : sink_(sink),
      rows_(header, header.palette.empty() ? PngFilter::kLeft : PngFilter::kNone, sink) {
    WritePngStart(header, sink);
}

void PngWriter::Finish() {
    rows_.Finish();
    WritePngEnd(sink_);
}

void WritePicture(const PackedBitmapView& picture, bool whiteIsClear, OutputSink& sink) {
    PngHeader header;
    header.width = picture.Width();
    header.height = picture.Height();
    header.whiteIsClear = whiteIsClear;
    const int bits = picture.Bits();
    if (bits == 1 || bits == 2 || bits == 4 || bits == 8) {
        header.bits = bits;
        // All of them: a dot may use an entry behind the end of the bitmap's table (black).
        for (std::uint32_t i = 0; i < 1U << bits; ++i) header.palette.push_back(picture.Colour(i));
    }
    PngWriter writer(header, sink);
    std::vector<std::uint8_t> rgb;  // a row of one bit a dot can have a billion dots
    if (header.palette.empty()) rgb.resize(PngRowBytes(header));
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
        if (!rgb.empty()) picture.RowToRgb(y, rgb.data());
        writer.WriteRow(rgb.empty() ? picture.RowFromTop(y) : rgb.data());
    }
    writer.Finish();
}

}  // namespace qm
