// The calls a replay script can make on a sink: one table row a method, with its arguments. Test:
// tests/replay/replay_test.cpp.
#pragma once

#include <qmfilter.h>

#include <string_view>

#include "replay/replay_line.h"

namespace qm {

struct ScriptCall {
    std::string_view name;
    // The line's syntax behind the name, for messages.
    std::string_view arguments;
    // Reads the arguments and calls the method of `sink`, which has the table's interface.
    HRESULT (*invoke)(IUnknown* sink, Arguments& arguments);
};

enum class SinkKind { kStructure, kVector, kVectorReal, kRaster };

// The method `name` of a sink, or null.
const ScriptCall* FindCall(SinkKind kind, std::string_view name) noexcept;
// Whether any kind of sink has the method.
bool IsCall(std::string_view name) noexcept;

}  // namespace qm
