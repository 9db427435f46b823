#include "server/class_factory.h"

#include <atomic>

namespace qm {
namespace {

// Factories are made anew for each request, so the locks are the module's, not theirs.
std::atomic<LONG>& ModuleLocks() noexcept {
    static std::atomic<LONG> count{0};
    return count;
}

}  // namespace

bool IsModuleLocked() noexcept { return ModuleLocks().load() > 0; }

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID riid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return make_(outer, riid, object);
}

HRESULT ClassFactory::LockServer(BOOL lock) noexcept {
    std::atomic<LONG>& locks = ModuleLocks();
    if (lock != FALSE) {
        ++locks;
        return S_OK;
    }
    LONG count = locks.load();
    while (count > 0 && !locks.compare_exchange_weak(count, count - 1)) {
    }
    return count > 0 ? S_OK : E_FAIL;
}

}  // namespace qm
