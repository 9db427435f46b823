// GlobalBlock owns a movable global memory block, GlobalView locks one while it lives.
//
// Packed bitmaps travel as such blocks; the one who receives the handle frees it (Attach).
// Test: tests/platform/bstr_test.cpp.
#pragma once

#include <windows.h>

#include <cstdint>
#include <utility>

namespace qm {

class GlobalBlock {
  public:
    GlobalBlock() noexcept = default;
    // Takes over `memory`, which may be null.
    explicit GlobalBlock(HGLOBAL memory) noexcept : memory_(memory) {}
    // A zeroed block; empty (false) when memory runs out.
    static GlobalBlock Allocate(std::size_t bytes) noexcept {
        return GlobalBlock(GlobalAlloc(GHND, bytes));
    }
    GlobalBlock(GlobalBlock&& other) noexcept : memory_(other.Detach()) {}
    GlobalBlock& operator=(GlobalBlock other) noexcept {
        std::swap(memory_, other.memory_);
        return *this;
    }
    ~GlobalBlock() {
        if (memory_ != nullptr) GlobalFree(memory_);
    }

    HGLOBAL Get() const noexcept { return memory_; }
    explicit operator bool() const noexcept { return memory_ != nullptr; }
    // Gives the block to the caller.
    [[nodiscard]] HGLOBAL Detach() noexcept { return std::exchange(memory_, nullptr); }

  private:
    HGLOBAL memory_ = nullptr;
};

// The bytes of a block that someone owns, locked until the end of the scope.
class GlobalView {
  public:
    // Data() is null when `memory` is null, empty or cannot be locked.
    explicit GlobalView(HGLOBAL memory) noexcept
        : memory_(memory),
          data_(memory == nullptr ? nullptr : static_cast<std::uint8_t*>(GlobalLock(memory))) {}
    ~GlobalView() {
        if (data_ != nullptr) GlobalUnlock(memory_);
    }
    GlobalView(const GlobalView&) = delete;
    GlobalView& operator=(const GlobalView&) = delete;

    std::uint8_t* Data() const noexcept { return data_; }
    // Bytes of the block, which Windows may have rounded up.
    std::size_t Size() const noexcept { return data_ == nullptr ? 0 : GlobalSize(memory_); }

  private:
    HGLOBAL memory_;
    std::uint8_t* data_;
};

}  // namespace qm
