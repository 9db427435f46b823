// The calls that a replay script can make: one table of all methods of the sinks, a row a script
// word. Entry point: FindCall. How the arguments are read: sink_methods.h. Test:
// tests/replay/replay_test.cpp.
#pragma once

#include <string_view>

#include "replay/sink_methods.h"

namespace qm {

struct ScriptCall {
    std::string_view name;
    // The line's syntax behind the name, for messages.
    std::string_view arguments;
    MethodPerSink methods;

    // The method of that kind of sink; null when it has none of this name.
    SinkMethod MethodOf(SinkKind kind) const noexcept {
        return methods[static_cast<std::size_t>(kind)];
    }
};

// The row of `name`, or null when no kind of sink has such a method.
const ScriptCall* FindCall(std::string_view name) noexcept;

}  // namespace qm
