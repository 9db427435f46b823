// ContentStream: the operators of a page, in pieces that are compressed and written as they fill
// up. The other objects of the page can be written in between. Test:
// tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "render/pdf/decimal.h"
#include "render/pdf/pdf_file.h"

namespace qm::pdf {

// "cm/NAME Do\n", which ends a transformation and draws a form; of one size, so that copying it
// takes no loop.
struct FormOperators {
    std::array<char, 15> text{};
    std::uint8_t size = 0;
};

class ContentStream {
  public:
    explicit ContentStream(PdfFile& file) : file_(file), buffer_(new char[kBytes]) {}

    // Whole operands and operators, with the white space behind them: pieces part between calls. At
    // most kLongest bytes.
    static constexpr std::size_t kLongest = std::size_t{1} << 16;
    ContentStream& operator<<(std::string_view text) {
        std::memcpy(Room(text.size()), text.data(), text.size());
        used_ += text.size();
        return *this;
    }
    // A number and a blank.
    ContentStream& operator<<(std::int64_t number) {
        char* const at = Room(kNumberBytes);
        Used(PutDecimal(at, number));
        return *this;
    }
    ContentStream& operator<<(std::int32_t number) { return *this << std::int64_t{number}; }
    // The nearest number with at most one decimal (1/400 mm), and without. Numbers beyond any
    // coordinate, and what is none, become 0.
    ContentStream& Tenths(double number);
    ContentStream& Whole(double number);
    // "x y l\n", the operator that most of a page consists of.
    void Point(std::int64_t x, std::int64_t y, char command) {
        char* at = Room(2 * kNumberBytes);
        at = PutDecimal(at, x);
        *at++ = ' ';
        at = PutDecimal(at, y);
        *at++ = ' ';
        *at++ = command;
        Used(at, '\n');
    }
    // Moves by (x, y) and draws the form of a letter.
    void Letter(std::int64_t x, std::int64_t y, const FormOperators& draw);

    // Writes what is left; the pieces in their order, the page's /Contents.
    const std::vector<ObjectNumber>& Finish();

  private:
    static constexpr std::size_t kBytes = std::size_t{1} << 18;
    static constexpr std::size_t kNumberBytes = kDecimalBytes + 4;

    char* Room(std::size_t bytes) {
        if (kBytes - used_ < bytes) Flush();
        return buffer_.get() + used_;
    }
    void Used(char* end, char separator = ' ') {
        *end = separator;
        used_ = static_cast<std::size_t>(end + 1 - buffer_.get());
    }
    void Flush();

    PdfFile& file_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
    std::vector<ObjectNumber> pieces_;
};

}  // namespace qm::pdf
