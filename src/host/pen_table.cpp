#include "host/pen_table.h"

namespace qm {

namespace {

constexpr ULONG kNotGiven = 0xFFFFFFFF;

}  // namespace

PenTable::Pen* PenTable::Find(LONG pen) noexcept {
    for (Pen& candidate : pens_) {
        if (candidate.number == pen) return &candidate;
    }
    return nullptr;
}

HRESULT PenTable::AddPen(LONG pen, ULONG colour, DOUBLE width, ULONG style) noexcept {
    const Pen entry{pen, colour, width, style};
    if (Pen* const known = Find(pen); known != nullptr) {
        *known = entry;
        return S_OK;
    }
    return Guarded([&]() -> HRESULT {
        pens_.push_back(entry);
        return S_OK;
    });
}

HRESULT PenTable::GetPen(LONG pen, LONG* style, LONG* colour, DOUBLE* width) noexcept {
    const Pen* const found = Find(pen);
    if (found == nullptr) return E_INVALIDARG;
    if (style != nullptr && found->style != kNotGiven) *style = static_cast<LONG>(found->style);
    if (colour != nullptr && found->colour != kNotGiven) *colour = static_cast<LONG>(found->colour);
    if (width != nullptr && found->width >= 0.0) *width = found->width;
    return S_OK;
}

HRESULT PenTable::GetPenCount(LONG* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = static_cast<LONG>(pens_.size());
    return S_OK;
}

HRESULT PenTable::GetPenNumber(LONG index, LONG* pen) noexcept {
    if (pen == nullptr) return E_POINTER;
    if (index < 0 || static_cast<std::size_t>(index) >= pens_.size()) return E_INVALIDARG;
    *pen = pens_[static_cast<std::size_t>(index)].number;
    return S_OK;
}

}  // namespace qm
