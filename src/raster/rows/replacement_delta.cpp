// Method 10, the replacement delta row of 3-byte pixels; declared in row_decoders.h.
#include <algorithm>
#include <cstring>

#include "raster/rows/row_decoders.h"

namespace qm {

namespace {

struct Pixel {
    std::uint8_t bytes[3];
};

// Command byte: run bit, pixel source (2 bits), offset (2 bits), count (3 bits).
enum PixelSource : unsigned { kNewColour = 0, kSeedLeft = 1, kSeedRight = 2, kCached = 3 };

// The two's complement value of the five bits at `shift`, as a byte.
std::uint8_t Signed5(unsigned word, unsigned shift) {
    const unsigned field = (word >> shift) & 31U;
    return static_cast<std::uint8_t>(field < 16 ? field : field + 224);
}

std::uint8_t ByteSum(unsigned a, unsigned b) { return static_cast<std::uint8_t>(a + b); }

class ReplacementDecoder {
  public:
    ReplacementDecoder(ByteSpan data, const std::uint8_t* seed, const RowTarget& target)
        : from_(data.data),
          end_(data.data + data.size),
          seed_(seed),
          row_(target.row),
          size_(target.size),
          at_(target.offset) {}

    void Run() {
        while (from_ != end_ && at_ < size_) {
            if (!Command(*from_++)) return;
        }
    }

  private:
    // One command; false when the data ended inside a colour.
    bool Command(unsigned command) {
        const bool run = (command & 0x80U) != 0;
        std::size_t offset = (command >> 3) & 3U;
        if (offset == 3) offset += Extension();
        at_ += offset * 3;
        Pixel pixel;
        if (!FirstPixel((command >> 5) & 3U, pixel)) return false;
        const std::size_t count = command & 7U;
        if (run) {
            WriteRun(pixel, count + 2 + (count == 7 ? Extension() : 0));
            return true;
        }
        return WriteLiteral(pixel, count);
    }

    // Bytes added to an offset or count that has its top value: up to and with the first one below
    // 255.
    std::size_t Extension() {
        std::size_t sum = 0;
        std::uint8_t more = 255;
        while (more == 255 && from_ != end_) {
            more = *from_++;
            sum += more;
        }
        return sum;
    }

    bool FirstPixel(unsigned source, Pixel& pixel) {
        switch (source) {
            case kNewColour:
                if (!NewColour(pixel)) return false;
                cached_ = pixel;
                return true;
            case kSeedLeft:
                pixel = at_ >= 3 ? SeedPixel(at_ - 3) : Pixel{{0, 0, 0}};
                return true;
            case kSeedRight:
                pixel = SeedPixel(at_ + 3);
                return true;
            default:
                pixel = cached_;
                return true;
        }
    }

    // A colour from the data: two bytes of differences to the seed pixel at the position, or three
    // bytes that hold 8, 8 and 7 bits.
    bool NewColour(Pixel& pixel) {
        if (end_ - from_ < 2) return false;
        const unsigned word = (static_cast<unsigned>(from_[0]) << 8) | from_[1];
        if ((word & 0x8000U) != 0) {
            from_ += 2;
            const Pixel seed = SeedPixel(at_);
            pixel.bytes[0] = ByteSum(seed.bytes[0], Signed5(word, 10));
            pixel.bytes[1] = ByteSum(seed.bytes[1], Signed5(word, 5));
            pixel.bytes[2] = ByteSum(seed.bytes[2], 2U * Signed5(word, 0));
            return true;
        }
        if (end_ - from_ < 3) return false;
        const unsigned value = (word << 8) | from_[2];
        from_ += 3;
        pixel.bytes[0] = static_cast<std::uint8_t>(value >> 15);
        pixel.bytes[1] = static_cast<std::uint8_t>(value >> 7);
        pixel.bytes[2] = static_cast<std::uint8_t>(value * 2);
        return true;
    }

    Pixel SeedPixel(std::size_t at) const {
        Pixel pixel{{0, 0, 0}};
        if (seed_ != nullptr && at < size_) {
            std::memcpy(pixel.bytes, seed_ + at, std::min<std::size_t>(3, size_ - at));
        }
        return pixel;
    }

    void WritePixel(const Pixel& pixel) {
        if (at_ + 3 <= size_) {
            std::memcpy(row_ + at_, pixel.bytes, 3);
        } else if (at_ < size_) {
            std::memcpy(row_ + at_, pixel.bytes, size_ - at_);
        }
        at_ += 3;
    }

    void WriteRun(const Pixel& pixel, std::size_t count) {
        for (; count != 0 && at_ < size_; --count) WritePixel(pixel);
    }

    // The count of 8 is extended only behind its eighth pixel, so the pixels come in two parts.
    bool WriteLiteral(const Pixel& first, std::size_t further) {
        WritePixel(first);
        if (!WriteNewColours(further)) return false;
        return further != 7 || WriteNewColours(Extension());
    }

    bool WriteNewColours(std::size_t count) {
        Pixel pixel;
        for (; count != 0; --count) {
            if (at_ >= size_ || !NewColour(pixel)) return false;
            WritePixel(pixel);
        }
        return true;
    }

    const std::uint8_t* from_;
    const std::uint8_t* end_;
    const std::uint8_t* seed_;
    std::uint8_t* row_;
    std::size_t size_;
    std::size_t at_;
    // Quirk: the middle byte is 254, so a row that begins with "cached colour" is not pure white.
    Pixel cached_{{255, 254, 255}};
};

}  // namespace

void DecodeReplacementDeltaRow(ByteSpan data, const std::uint8_t* seed, const RowTarget& target) {
    // Without commands the row is the seed: the copy is method 3's with no data.
    DecodeDeltaRow({}, seed, target);
    ReplacementDecoder(data, seed, target).Run();
}

}  // namespace qm
