#include "platform/com_object.h"

#include <atomic>

namespace qm {
namespace {

// The one counter of the module: how many objects stand between it and being unloaded.
std::atomic<LONG>& LiveObjects() noexcept {
    static std::atomic<LONG> count{0};
    return count;
}

}  // namespace

LONG LiveObjectCount() noexcept { return LiveObjects().load(); }

LiveObject::LiveObject() noexcept { ++LiveObjects(); }
LiveObject::~LiveObject() { --LiveObjects(); }

}  // namespace qm
