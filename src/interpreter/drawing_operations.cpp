// The base answers of a source that holds nothing.
#include "interpreter/drawing_operations.h"

namespace qm {

std::uint32_t DrawingOperations::ReadData(void* /*buffer*/, std::uint32_t /*maxBytes*/) {
    return 0;
}

std::uint32_t DrawingOperations::GetDataSize() { return 0; }

std::uint32_t DrawingOperations::SeekData(std::int32_t /*offset*/, std::int32_t /*origin*/) {
    return 0;
}

}  // namespace qm
