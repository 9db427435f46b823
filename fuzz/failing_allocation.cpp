// In a file of its own, so that no caller sees through the replaced operators.
#include "fuzz/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace {

struct {
    bool counts = false;
    std::size_t count = 0;
    std::size_t failing = SIZE_MAX;
    bool all = false;
} state;

bool Refused() {
    if (!state.counts) return false;
    const std::size_t number = state.count++;
    return number == state.failing || (state.all && number > state.failing);
}

}  // namespace

qm::FailingAllocation::FailingAllocation(std::size_t number, Reach reach) {
    state = {true, 0, number, reach == Reach::kAllFromThere};
}
qm::FailingAllocation::~FailingAllocation() { state = {}; }
std::size_t qm::FailingAllocation::Count() const { return state.count; }

extern "C" {
void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t bytes);
void* __real_realloc(void* memory, std::size_t bytes);
void* __wrap_malloc(std::size_t bytes) { return Refused() ? nullptr : __real_malloc(bytes); }
void* __wrap_calloc(std::size_t count, std::size_t bytes) {
    return Refused() ? nullptr : __real_calloc(count, bytes);
}
void* __wrap_realloc(void* memory, std::size_t bytes) {
    return Refused() ? nullptr : __real_realloc(memory, bytes);
}
}

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return __wrap_malloc(bytes > 0 ? bytes : 1);
}
void* operator new(std::size_t bytes) {
    void* const memory = operator new(bytes, std::nothrow);
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
