// Base64Sink: passes bytes on as Base64 text (RFC 4648), for pictures inside SVG. Test:
// tests/render/png_writer_test.cpp.
#pragma once

#include <array>
#include <cstdint>

#include "render/text_buffer.h"

namespace qm {

class Base64Sink final : public OutputSink {
  public:
    explicit Base64Sink(TextBuffer& out) : out_(out) {}

    void Write(std::string_view bytes) override {
        for (const char byte : bytes) {
            held_ = held_ << 8 | static_cast<unsigned char>(byte);
            if (++count_ == 3) Emit(4);
        }
    }
    // The bytes of an unfinished group, padded.
    void Finish() {
        const int letters = count_ + 1;
        if (count_ == 0) return;
        held_ <<= 8 * (3 - count_);
        Emit(letters);
        out_ << (letters == 2 ? "==" : "=");
    }

  private:
    void Emit(int letters) {
        constexpr std::string_view kAlphabet =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        std::array<char, 4> text{};
        for (std::size_t i = 0; i < 4; ++i) text[i] = kAlphabet[held_ >> (18 - 6 * i) & 63];
        out_ << std::string_view(text.data(), static_cast<std::size_t>(letters));
        held_ = 0;
        count_ = 0;
    }

    TextBuffer& out_;
    std::uint32_t held_ = 0;
    int count_ = 0;
};

}  // namespace qm
