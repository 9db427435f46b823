// FailingAllocation: while it exists, allocations of this program are counted, and the one of a
// given number fails, or that one and all behind it. What the program's own code and the static
// libraries take counts, by operator new and by malloc, calloc and realloc (the linker's --wrap).
// Test: tests/faults/allocation_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm {

class FailingAllocation {
  public:
    enum class Reach { kOne, kAllFromThere };
    explicit FailingAllocation(std::size_t number = SIZE_MAX, Reach reach = Reach::kOne);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    std::size_t Count() const;
};

}  // namespace qm
