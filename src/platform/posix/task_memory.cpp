#include "platform/posix/task_memory.h"

#include <cstdlib>

LPVOID CoTaskMemAlloc(SIZE_T bytes) noexcept { return std::malloc(bytes); }
LPVOID CoTaskMemRealloc(LPVOID block, SIZE_T bytes) noexcept { return std::realloc(block, bytes); }
void CoTaskMemFree(LPVOID block) noexcept { std::free(block); }
