// In a file of its own, so that no caller sees through the replaced operators.
#include "tests/import/allocation_limit.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::size_t limit = SIZE_MAX;

}  // namespace

qm::AllocationLimit::AllocationLimit(std::size_t bytes) { limit = bytes; }
qm::AllocationLimit::~AllocationLimit() { limit = SIZE_MAX; }

// All forms that share their memory: a sanitizer's own are not made of one another.
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return bytes > limit ? nullptr : std::malloc(bytes > 0 ? bytes : 1);
}
void* operator new(std::size_t bytes) {
    void* memory = operator new(bytes, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return operator new(bytes, std::nothrow);
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
