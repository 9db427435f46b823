// See host_log.h.
#include "trace/host_log.h"

#include <algorithm>
#include <utility>

#include "platform/com_ptr.h"
#include "platform/text.h"
#include "platform/variant.h"

namespace qm {

void AppendArgument(std::string& line, LONG value) {
    line += ' ';
    AppendInteger(line, value);
}

void AppendArgument(std::string& line, double value) {
    line += ' ';
    AppendDouble(line, value);
}

void AppendArgument(std::string& line, BSTR value) {
    line += ' ';
    AppendQuoted(line, WideToBytes(ViewOf(value)));
}

void AppendArgument(std::string& line, const VARIANT& value) {
    switch (value.vt) {
        case VT_BSTR:
            return AppendArgument(line, value.bstrVal);
        case VT_BOOL:
            return AppendArgument(line, AsWord{value.boolVal != VARIANT_FALSE ? "true" : "false"});
        case VT_I4:
            return AppendArgument(line, value.lVal);
        case VT_R8:
            return AppendArgument(line, value.dblVal);
        default:
            return AppendArgument(line, AsWord{"?"});
    }
}

void AppendArgument(std::string& line, VARIANT_BOOL value) {
    line += value != VARIANT_FALSE ? " 1" : " 0";
}

void AppendArgument(std::string& line, AsHex value) {
    line += ' ';
    AppendHexNumber(line, value.value, value.digits);
}

void AppendArgument(std::string& line, AsWord value) {
    line += ' ';
    line += value.value;
}

void AppendArgument(std::string& line, AsPairs value) {
    line += " :";
    const LONG* pair = value.values;
    for (LONG i = 0; i < value.count; ++i, pair += 2) {
        AppendArgument(line, pair[0]);
        line += ',';
        AppendInteger(line, pair[1]);
    }
}

void AppendArgument(std::string& line, AsList value) {
    for (LONG i = 0; i < value.count; ++i) AppendArgument(line, value.values[i]);
}

void AppendArgument(std::string& line, AsBytes value) {
    line += value.count > 0 ? " : " : " :";
    AppendHex(line, value.values, static_cast<std::size_t>(std::max<LONG>(value.count, 0)));
}

void HostLog::AppendOne(const VARIANT& value) {
    if (value.vt == VT_UNKNOWN) return AppendOne(value.punkVal);
    AppendArgument(line_, value);
}

std::string_view HostLog::NameOf(IUnknown* object) const {
    const auto identity = Query<IUnknown>(object);
    const auto found = names_.find(identity.Get());
    return found == names_.end() ? "?" : std::string_view(found->second);
}

}  // namespace qm
