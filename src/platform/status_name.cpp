// See status_name.h.
#include "platform/status_name.h"

#include <array>
#include <cstdio>
#include <utility>

namespace qm {

std::string StatusName(HRESULT status) {
    static constexpr std::pair<HRESULT, const char*> kNames[] = {
        {S_OK, "S_OK"},
        {S_FALSE, "S_FALSE"},
        {E_ABORT, "E_ABORT"},
        {E_FAIL, "E_FAIL"},
        {E_INVALIDARG, "E_INVALIDARG"},
        {E_NOINTERFACE, "E_NOINTERFACE"},
        {E_NOTIMPL, "E_NOTIMPL"},
        {E_OUTOFMEMORY, "E_OUTOFMEMORY"},
        {E_POINTER, "E_POINTER"},
        {E_UNEXPECTED, "E_UNEXPECTED"},
        {STG_E_MEDIUMFULL, "STG_E_MEDIUMFULL"},
        {STG_E_WRITEFAULT, "STG_E_WRITEFAULT"},
    };
    for (const auto& [value, name] : kNames) {
        if (value == status) return name;
    }
    std::array<char, 11> text;
    std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned>(status));
    return text.data();
}

}  // namespace qm
