#include "render/png_writer.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "common/tool_error.h"

namespace qm {

namespace {

constexpr std::size_t kChunkBytes = std::size_t{1} << 16;
constexpr double kInchesPerMetre = 1.0 / 0.0254;
constexpr std::uint8_t kSubFilter = 1;

std::string BigEndian(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16 & 0xFF),
            static_cast<char>(value >> 8 & 0xFF), static_cast<char>(value & 0xFF)};
}

bool IsWhite(PaletteEntry colour) {
    return colour.red == 255 && colour.green == 255 && colour.blue == 255;
}

const Bytef* AsBytes(std::string_view text) { return reinterpret_cast<const Bytef*>(text.data()); }

}  // namespace

struct PngWriter::Deflater {
    explicit Deflater(int level) {
        if (deflateInit(&stream, level) != Z_OK) throw std::bad_alloc();
        stream.next_out = out.data();
        stream.avail_out = static_cast<uInt>(out.size());
    }
    ~Deflater() { deflateEnd(&stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    z_stream stream{};
    std::array<Bytef, kChunkBytes> out;
};

PngWriter::PngWriter(const PngHeader& header, OutputSink& sink)
    : sink_(sink), deflater_(std::make_unique<Deflater>(header.level)) {
    const bool indexed = !header.palette.empty();
    const std::size_t bits = indexed ? static_cast<std::size_t>(header.bits) : 24;
    rowBytes_ = (static_cast<std::size_t>(header.width) * bits + 7) / 8;
    pixelBytes_ = indexed ? 0 : 3;
    filtered_.resize(rowBytes_ + 1);
    WriteHeader(header);
    WritePalette(header);
}

PngWriter::~PngWriter() = default;

void PngWriter::WriteChunk(const char* type, std::string_view data) {
    const std::string name(type);
    uLong check = crc32(0, AsBytes(name), 4);
    check = crc32(check, AsBytes(data), static_cast<uInt>(data.size()));
    sink_.Write(BigEndian(static_cast<std::uint32_t>(data.size())) + name);
    sink_.Write(data);
    sink_.Write(BigEndian(static_cast<std::uint32_t>(check)));
}

void PngWriter::WriteHeader(const PngHeader& header) {
    sink_.Write("\x89PNG\r\n\x1a\n");
    const char colourType = header.palette.empty() ? 2 : 3;
    std::string ihdr = BigEndian(static_cast<std::uint32_t>(header.width)) +
                       BigEndian(static_cast<std::uint32_t>(header.height));
    ihdr += static_cast<char>(header.bits);
    ihdr += colourType;
    ihdr.append(3, '\0');  // deflate, standard filters, not interlaced
    WriteChunk("IHDR", ihdr);
    if (header.dotsPerInch > 0.0) {
        const auto dots =
            static_cast<std::uint32_t>(std::lround(header.dotsPerInch * kInchesPerMetre));
        WriteChunk("pHYs", BigEndian(dots) + BigEndian(dots) + '\1');
    }
}

void PngWriter::WritePalette(const PngHeader& header) {
    if (header.palette.empty()) {
        if (header.whiteIsClear) WriteChunk("tRNS", std::string("\0\xff\0\xff\0\xff", 6));
        return;
    }
    std::string colours;
    std::string alpha;
    for (const PaletteEntry entry : header.palette) {
        colours += {static_cast<char>(entry.red), static_cast<char>(entry.green),
                    static_cast<char>(entry.blue)};
        alpha += header.whiteIsClear && IsWhite(entry) ? '\0' : '\xff';
    }
    WriteChunk("PLTE", colours);
    if (alpha.find('\0') != std::string::npos) WriteChunk("tRNS", alpha);
}

void PngWriter::Deflate(int flush) {
    z_stream& stream = deflater_->stream;
    int status = Z_OK;
    do {
        status = deflate(&stream, flush);
        if (status == Z_STREAM_ERROR) throw PageError("PNG compression failed");
        const std::size_t ready = kChunkBytes - stream.avail_out;
        if (stream.avail_out == 0 || (flush == Z_FINISH && ready > 0)) {
            WriteChunk("IDAT", {reinterpret_cast<const char*>(deflater_->out.data()), ready});
            stream.next_out = deflater_->out.data();
            stream.avail_out = static_cast<uInt>(kChunkBytes);
        }
    } while (flush == Z_FINISH ? status != Z_STREAM_END : stream.avail_in > 0);
}

void PngWriter::WriteRow(const std::uint8_t* row) {
    // Indexed pictures compress best as they are, true colours as differences to the left.
    filtered_[0] = pixelBytes_ > 0 ? kSubFilter : std::uint8_t{0};
    std::copy(row, row + rowBytes_, filtered_.begin() + 1);
    if (pixelBytes_ > 0) {
        for (std::size_t i = pixelBytes_; i < rowBytes_; ++i) {
            filtered_[i + 1] = static_cast<std::uint8_t>(row[i] - row[i - pixelBytes_]);
        }
    }
    deflater_->stream.next_in = filtered_.data();
    deflater_->stream.avail_in = static_cast<uInt>(filtered_.size());
    Deflate(Z_NO_FLUSH);
}

void PngWriter::Finish() {
    Deflate(Z_FINISH);
    WriteChunk("IEND", "");  // not a null view: zlib would start the check sum afresh
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
    std::vector<std::uint8_t> rgb(std::size_t{3} * static_cast<std::size_t>(picture.Width()));
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
        if (!header.palette.empty()) {
            writer.WriteRow(picture.RowFromTop(y));
            continue;
        }
        picture.RowToRgb(y, rgb.data());
        writer.WriteRow(rgb.data());
    }
    writer.Finish();
}

}  // namespace qm
