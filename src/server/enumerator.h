// Enumerator: COM's enumerators (Next, Skip, Reset, Clone) over a list that was copied when the
// enumerator was made, so that changes made meanwhile do not disturb it.
//
// `Kind` says what is enumerated: Kind::Interface (IEnumConnections, ...), Kind::Item (what the
// list holds), Kind::Raw (what Next hands out) and Kind::Share(item), the Raw with references of
// the caller's. Test: tests/server/connection_point_test.cpp.
#pragma once

#include <algorithm>
#include <vector>

#include "platform/com_object.h"

namespace qm {

template <typename Kind>
class Enumerator final : public ComObject<typename Kind::Interface> {
  public:
    using Items = std::vector<typename Kind::Item>;

    explicit Enumerator(Items items, std::size_t position = 0)
        : items_(std::move(items)), position_(position) {}

    // `fetched` may be null only when one item is asked for. S_FALSE: fewer than `count` were left.
    HRESULT STDMETHODCALLTYPE Next(ULONG count, typename Kind::Raw* raw,
                                   ULONG* fetched) noexcept override {
        if (raw == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
        const std::size_t taken = Available(count);
        for (std::size_t i = 0; i < taken; ++i) raw[i] = Kind::Share(items_[position_ + i]);
        position_ += taken;
        if (fetched != nullptr) *fetched = static_cast<ULONG>(taken);
        return taken == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
        const std::size_t skipped = Available(count);
        position_ += skipped;
        return skipped == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override {
        position_ = 0;
        return S_OK;
    }
    // The copy stands where this one stands.
    HRESULT STDMETHODCALLTYPE Clone(typename Kind::Interface** copy) noexcept override {
        return Make(items_, position_, copy);
    }

    // A new enumerator over `items` for an out parameter.
    static HRESULT Make(const Items& items, std::size_t position,
                        typename Kind::Interface** enumerator) noexcept {
        if (enumerator == nullptr) return E_POINTER;
        *enumerator = nullptr;
        return Guarded([&] {
            *enumerator = MakeObject<Enumerator>(items, position).Detach();
            return *enumerator != nullptr ? S_OK : E_OUTOFMEMORY;
        });
    }

  private:
    std::size_t Available(ULONG count) const noexcept {
        return std::min<std::size_t>(count, items_.size() - position_);
    }

    const Items items_;
    std::size_t position_;
};

}  // namespace qm
