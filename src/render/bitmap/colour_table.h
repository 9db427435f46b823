// ColourTable: numbers for the colours of a page in the order in which they come, up to 256. Test:
// tests/render/bitmap/page_bitmap_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm::bitmap {

class ColourTable {
  public:
    static constexpr std::size_t kMost = 256;

    ColourTable() { slots_.fill(kFree); }

    // The number of `colour` (0x00RRGGBB), a new one if it has none; kMost when there is none left.
    std::size_t NumberOf(std::uint32_t colour) {
        if (colour == last_) return lastNumber_;
        std::size_t slot = (colour * 0x9E3779B1U) >> 22;
        while (slots_[slot] != kFree && colours_[slots_[slot]] != colour) {
            slot = (slot + 1) % kSlots;
        }
        if (slots_[slot] == kFree) {
            if (colours_.size() == kMost) return kMost;
            slots_[slot] = static_cast<std::uint16_t>(colours_.size());
            colours_.push_back(colour);
        }
        last_ = colour;
        lastNumber_ = slots_[slot];
        return lastNumber_;
    }
    // By number.
    const std::vector<std::uint32_t>& Colours() const { return colours_; }

  private:
    static constexpr std::size_t kSlots = 1024;
    static constexpr std::uint16_t kFree = 0xFFFF;

    std::array<std::uint16_t, kSlots> slots_{};
    std::vector<std::uint32_t> colours_;
    std::uint32_t last_ = 0xFFFFFFFF;  // of no dot
    std::size_t lastNumber_ = 0;
};

}  // namespace qm::bitmap
