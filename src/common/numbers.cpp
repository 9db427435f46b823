// See numbers.h.
#include "common/numbers.h"

namespace qm {

std::optional<std::size_t> CheckedBytes(std::int64_t count, std::int64_t size, std::int64_t limit) {
    if (count < 0 || size < 0) return std::nullopt;
    if (size != 0 && count > limit / size) return std::nullopt;
    return static_cast<std::size_t>(count * size);
}

}  // namespace qm
