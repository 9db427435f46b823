// AllocationLimit: while it exists, larger allocations through operator new fail in this program.
#pragma once

#include <cstddef>

namespace qm {

class AllocationLimit {
  public:
    explicit AllocationLimit(std::size_t bytes);
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

}  // namespace qm
