#include "qmfilter/portable/memory.h"

#include <cstdlib>
#include <new>

namespace {

struct Block {
    void* data;
    SIZE_T size;
    UINT locks;
};

Block* BlockOf(HGLOBAL memory) noexcept { return static_cast<Block*>(memory); }

}  // namespace

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) noexcept {
    if ((flags & GMEM_MOVEABLE) == 0) return nullptr;
    auto* block = new (std::nothrow) Block{nullptr, bytes, 0};
    if (block == nullptr || bytes == 0) return block;
    block->data = (flags & GMEM_ZEROINIT) != 0 ? std::calloc(bytes, 1) : std::malloc(bytes);
    if (block->data != nullptr) return block;
    delete block;
    return nullptr;
}

HGLOBAL GlobalReAlloc(HGLOBAL memory, SIZE_T bytes, UINT flags) noexcept {
    Block* block = BlockOf(memory);
    if (block == nullptr) return nullptr;
    if (bytes == 0) {
        std::free(block->data);
        *block = {nullptr, 0, block->locks};
        return block;
    }
    void* data = std::realloc(block->data, bytes);
    if (data == nullptr) return nullptr;
    if ((flags & GMEM_ZEROINIT) != 0 && bytes > block->size) {
        std::memset(static_cast<char*>(data) + block->size, 0, bytes - block->size);
    }
    *block = {data, bytes, block->locks};
    return block;
}

LPVOID GlobalLock(HGLOBAL memory) noexcept {
    Block* block = BlockOf(memory);
    if (block == nullptr || block->data == nullptr) return nullptr;
    ++block->locks;
    return block->data;
}

BOOL GlobalUnlock(HGLOBAL memory) noexcept {
    Block* block = BlockOf(memory);
    if (block == nullptr || block->locks == 0) return FALSE;
    return --block->locks > 0 ? TRUE : FALSE;
}

SIZE_T GlobalSize(HGLOBAL memory) noexcept { return memory == nullptr ? 0 : BlockOf(memory)->size; }

HGLOBAL GlobalFree(HGLOBAL memory) noexcept {
    if (memory != nullptr) {
        std::free(BlockOf(memory)->data);
        delete BlockOf(memory);
    }
    return nullptr;
}

LPVOID CoTaskMemAlloc(SIZE_T bytes) noexcept { return std::malloc(bytes); }
void CoTaskMemFree(LPVOID block) noexcept { std::free(block); }
