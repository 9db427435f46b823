#include "render/bitmap/png_page.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "common/tool_error.h"
#include "host/page_summary.h"
#include "render/bitmap/page_bands.h"
#include "render/bitmap/page_raster.h"
#include "render/document_info.h"
#include "render/page_writers.h"

namespace qm::bitmap {

namespace {

// Rows kept beyond this are written in true colours although fewer might do.
constexpr std::size_t kMostKept = std::size_t{64} << 20;

// Dots at the start of `dots` that have the colour, in whole steps.
constexpr std::size_t kRunStep = 8;
std::size_t RunOf(const BandDot* dots, std::size_t count, std::uint32_t colour) {
    std::size_t run = 0;
    for (; run + kRunStep <= count; run += kRunStep) {
        std::uint32_t different = 0;
        for (std::size_t i = 0; i < kRunStep; ++i) different |= dots[run + i].colour ^ colour;
        if (different != 0) break;
    }
    return run;
}

bool IsGreyDot(std::uint32_t colour) {
    return (colour & 0xFF) == (colour >> 8 & 0xFF) && (colour & 0xFF) == colour >> 16;
}

// Reads kept rows back.
class RowReader {
  public:
    RowReader(const std::vector<std::string>& pieces, std::size_t rowBytes)
        : pieces_(pieces), row_(rowBytes + 1) {
        if (inflateInit(&stream_) != Z_OK) throw std::bad_alloc();
    }
    ~RowReader() { inflateEnd(&stream_); }
    RowReader(const RowReader&) = delete;
    RowReader& operator=(const RowReader&) = delete;

    // The next row, unfiltered.
    const std::uint8_t* Next() {
        stream_.next_out = row_.data();
        stream_.avail_out = static_cast<uInt>(row_.size());
        while (stream_.avail_out > 0) {
            if (stream_.avail_in == 0) {
                // A chunk is three pieces: length and type, the data, the check sum.
                const std::string& data = pieces_.at(3 * chunk_++ + 1);
                stream_.next_in =
                    reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));  // is not written to
                stream_.avail_in = static_cast<uInt>(data.size());
            }
            const int status = inflate(&stream_, Z_NO_FLUSH);
            if (status != Z_OK && status != Z_STREAM_END) throw PageError("PNG compression failed");
        }
        // Shades of grey may be differences to the left.
        for (std::size_t i = 2; row_[0] != 0 && i < row_.size(); ++i) {
            row_[i] = static_cast<std::uint8_t>(row_[i] + row_[i - 1]);
        }
        return row_.data() + 1;
    }

  private:
    const std::vector<std::string>& pieces_;
    std::size_t chunk_ = 0;
    std::vector<std::uint8_t> row_;
    z_stream stream_{};
};

}  // namespace

PngPage::PngPage(const PngHeader& header, OutputSink& sink)
    : header_(header), sink_(sink), numbers_(static_cast<std::size_t>(header.width)) {
    StartRows();
}

PngHeader PngPage::HeaderOf(Format format) const {
    PngHeader header = header_;
    // Of fewer bits a dot the small files cost little time.
    header.fast = format >= Format::kGrey;
    header.palette.clear();
    switch (format) {
        case Format::kOneBit:
            header.bits = 1;
            break;
        case Format::kTwoBits:
            header.bits = 2;
            break;
        case Format::kFourBits:
            header.bits = 4;
            break;
        case Format::kGrey:
            header.isGrey = true;
            return header;
        case Format::kByte:
            break;
        case Format::kColours:
            return header;
    }
    for (const std::uint32_t colour : colours_.Colours()) {
        header.palette.push_back(EntryOf(colour));
    }
    if (header.palette.empty()) header.palette.emplace_back();
    return header;
}

void PngPage::StartRows() {
    const PngHeader header = HeaderOf(format_);
    bits_ = static_cast<unsigned>(header.bits);
    packed_.assign(PngRowBytes(header), 0);
    if (format_ == Format::kColours) {
        kept_.reset();
        WritePngStart(header, sink_);
        rows_ = std::make_unique<PngRows>(header, PngFilter::kAsFits, sink_);
        return;
    }
    kept_ = std::make_unique<Kept>();
    const bool shades = format_ == Format::kGrey;
    rows_ =
        std::make_unique<PngRows>(header, shades ? PngFilter::kAsFits : PngFilter::kNone, *kept_);
}

PngPage::Format PngPage::Wider(std::size_t number, std::uint32_t colour) const {
    const bool grey = isGrey_ && IsGreyDot(colour);
    if (number == ColourTable::kMost) return Format::kColours;
    switch (format_) {
        case Format::kOneBit:
            return Format::kTwoBits;
        case Format::kTwoBits:
            return Format::kFourBits;
        default:
            return grey ? Format::kGrey : Format::kByte;
    }
}

void PngPage::Rewrite(Format format) {
    const Format before = format_;
    const std::size_t bits = bits_;
    const std::size_t rowBytes = packed_.size();
    rows_->Finish();
    const std::unique_ptr<Kept> kept = std::move(kept_);
    format_ = format;
    StartRows();
    // What becomes of the samples, and of all those that a byte holds.
    std::array<std::uint32_t, 256> colourOf{};
    std::array<std::array<std::uint8_t, 8>, 256> samplesOf{};
    const std::size_t perByte = 8 / bits;
    std::array<std::uint8_t, 256> sampleOf{};
    for (std::size_t number = 0; number < colours_.Colours().size(); ++number) {
        const std::uint32_t colour = colours_.Colours()[number];
        const std::size_t value = before == Format::kGrey ? colour & 0xFF : number;
        // The colour that did not fit is among them.
        if (value >> bits != 0 || (before == Format::kGrey && !IsGreyDot(colour))) continue;
        colourOf[value] = colour;
        const std::size_t shade = format == Format::kGrey ? colour & 0xFF : number;
        sampleOf[value] = static_cast<std::uint8_t>(format == Format::kColours ? value : shade);
    }
    for (std::size_t byte = 0; byte < samplesOf.size(); ++byte) {
        for (std::size_t i = 0; i < perByte; ++i) {
            const std::size_t value =
                byte >> (8 - bits - i * bits) & ((std::size_t{1} << bits) - 1);
            samplesOf[byte][i] = sampleOf[value];
        }
    }
    RowReader reader(kept->pieces, rowBytes);
    std::vector<std::uint8_t> last;
    std::vector<std::uint8_t> numbers(rowBytes * perByte);
    std::vector<BandDot> dots(format == Format::kColours ? numbers.size() : 0);
    for (std::int32_t y = 0; y < rowCount_; ++y) {
        const std::uint8_t* const row = reader.Next();
        if (last.empty() || !std::equal(last.begin(), last.end(), row)) {
            last.assign(row, row + rowBytes);
            for (std::size_t i = 0; i < rowBytes; ++i) {
                std::copy_n(samplesOf[row[i]].data(), perByte, &numbers[i * perByte]);
            }
            for (std::size_t x = 0; x < dots.size(); ++x) dots[x].colour = colourOf[numbers[x]];
        }
        if (format == Format::kColours) {
            WriteColours(dots.data());
        } else {
            WriteNumbers(numbers.data());
        }
    }
}

// False when the row needs a wider format, which is then chosen.
bool PngPage::TakeNumbers(const BandDot* row) {
    const auto most = std::size_t{1} << bits_;
    for (std::size_t x = 0; x < numbers_.size(); ++x) {
        // Most of a page is paper.
        if (x % kRunStep == 0 && x > 0) {
            const std::size_t run = RunOf(row + x, numbers_.size() - x, row[x - 1].colour);
            std::fill_n(&numbers_[x], run, numbers_[x - 1]);
            x += run;
            if (x == numbers_.size()) break;
        }
        const std::uint32_t colour = row[x].colour;
        const std::size_t count = colours_.Colours().size();
        const std::size_t number = colours_.NumberOf(colour);
        if (number == count || number == ColourTable::kMost) {  // a new one
            const bool fits = number < most && (format_ != Format::kGrey || IsGreyDot(colour));
            if (!fits) {
                Rewrite(Wider(number, colour));
                isGrey_ = isGrey_ && IsGreyDot(colour);
                return false;
            }
            isGrey_ = isGrey_ && IsGreyDot(colour);
        }
        numbers_[x] = static_cast<std::uint8_t>(format_ == Format::kGrey ? colour & 0xFF : number);
    }
    return true;
}

void PngPage::WriteNumbers(const std::uint8_t* numbers) {
    const unsigned bits = bits_;
    if (bits == 8) return rows_->Write(numbers);
    std::fill(packed_.begin(), packed_.end(), std::uint8_t{0});
    std::size_t x = 0;
    for (; bits == 1 && x + 8 <= numbers_.size(); x += 8) {
        unsigned byte = 0;
        for (std::size_t i = 0; i < 8; ++i) byte = byte << 1 | numbers[x + i];
        packed_[x / 8] = static_cast<std::uint8_t>(byte);
    }
    for (; x < numbers_.size(); ++x) {
        const std::size_t at = x * bits;
        packed_[at / 8] =
            static_cast<std::uint8_t>(packed_[at / 8] | numbers[x] << (8 - bits - at % 8));
    }
    rows_->Write(packed_.data());
}

void PngPage::WriteColours(const BandDot* row) {
    std::uint8_t* target = packed_.data();
    for (std::size_t x = 0; x < numbers_.size(); ++x, target += 3) {
        target[0] = static_cast<std::uint8_t>(row[x].colour >> 16);
        target[1] = static_cast<std::uint8_t>(row[x].colour >> 8);
        target[2] = static_cast<std::uint8_t>(row[x].colour);
    }
    rows_->Write(packed_.data());
}

void PngPage::Write(const BandDot* row) {
    while (format_ != Format::kColours && !TakeNumbers(row)) {
    }
    if (format_ == Format::kColours) {
        WriteColours(row);
    } else {
        WriteNumbers(numbers_.data());
    }
    ++rowCount_;
    if (kept_ && kept_->size > kMostKept) Rewrite(Format::kColours);
}

void PngPage::Finish() {
    rows_->Finish();
    if (kept_) {
        WritePngStart(HeaderOf(format_), sink_);
        for (const std::string& piece : kept_->pieces) sink_.Write(piece);
    }
    WritePngEnd(sink_);
}

}  // namespace qm::bitmap

namespace qm {

namespace {

// The resolution at which the longer side has options.sideDots.
double DpiOfSide(const PageSource& page, const PageOptions& options) {
    const PageFrame frame = FrameOf(page, GistOf(*page.drawing).extent, options);
    // A dot is begun for whatever is left over of the division.
    constexpr double kLeftOver = 1e-6;
    const double side = std::max(frame.width, frame.height);
    if (side <= 0.0) return options.dpi;  // a dot without margins is one at any resolution
    return (options.sideDots - kLeftOver) * frame.unitsPerInch / side;
}

// Dots that tell how much of what lies below is seen.
void WriteClearPage(const PageSource& page, const PageOptions& options,
                    const bitmap::PageRaster& raster, PngHeader header, OutputSink& sink) {
    using namespace bitmap;
    header.hasAlpha = true;
    header.fast = true;
    WritePngStart(header, sink);
    PngRows rows(header, PngFilter::kAsFits, sink);
    std::vector<std::uint8_t> bytes(PngRowBytes(header));
    const auto take = [&](const Band& band) {
        for (std::int32_t y = band.Top(); y < band.Bottom(); ++y) {
            std::uint8_t* to = bytes.data();
            const BandDot* const row = band.Row(y);
            for (const BandDot* dot = row; dot != row + band.Width(); ++dot) {
                for (const int shift : {16, 8, 0}) {
                    *to++ = static_cast<std::uint8_t>(dot->colour >> shift & 0xFF);
                }
                *to++ = static_cast<std::uint8_t>(dot->mark);
            }
            rows.Write(bytes.data());
        }
    };
    DrawBands(page, options, raster, take, BandBytesFor(page, options, raster));
    rows.Finish();
    WritePngEnd(sink);
}

}  // namespace

WorkBudget DotsForBitmaps(double dpi, std::uint64_t bytes) {
    const double scale = std::max(1.0, dpi / 100.0);
    const auto scaled = [&](std::int64_t dots) {
        return TruncateToInt64(static_cast<double>(dots) * scale * scale);
    };
    return WorkBudget::For(scaled(kBitmapDots), scaled(kBitmapDotsPerByte), bytes);
}

void WritePng(const PageSource& page, const PageOptions& options, OutputSink& sink) {
    using namespace bitmap;
    PageOptions drawing = options;
    if (drawing.sideDots > 0) drawing.dpi = DpiOfSide(page, drawing);
    const PageRaster raster = FittingRaster(page, drawing, "a PNG");
    PngHeader header;
    header.width = raster.width;
    header.height = raster.height;
    header.dotsPerInch = drawing.dpi;
    const std::string title = TitleOf(options.title, page.name);
    if (!title.empty()) header.texts.emplace_back("Title", title);
    header.texts.emplace_back("Software", kCreator);
    if (const auto date = SourceDate()) {
        header.texts.emplace_back("Creation Time", DateText(*date));
    }
    if (options.background.kind == Background::Kind::kNone) {
        return WriteClearPage(page, drawing, raster, header, sink);
    }
    PngPage png(header, sink);
    const auto take = [&](const Band& band) {
        for (std::int32_t y = band.Top(); y < band.Bottom(); ++y) png.Write(band.Row(y));
    };
    DrawBands(page, drawing, raster, take, BandBytesFor(page, drawing, raster));
    png.Finish();
}

}  // namespace qm
