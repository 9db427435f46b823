// Replay: drives an export filter from a text script, as a host would that walks its document.
//
// The syntax is in docs/replay.md: settings and pen tables, attributes, objects, and a line for
// each call on their sinks. Test: tests/export/*_test.cpp, whose scripts it runs.
#pragma once

#include <objbase.h>

#include <iosfwd>
#include <string>
#include <string_view>

namespace qm {

enum class ReplayFormat { kHpgl, kHprtl };

// Runs `script` and writes the document to `target`; `name` stands for the script in messages.
// Returns kExitSuccess, or kExitNotAPlot when some call did not return S_OK: each of those is a
// line "NAME:LINE: CALL returned STATUS" on `messages`, and the replay goes on. Throws ToolError
// with "NAME:LINE: cause" for a script that cannot be understood; what `target` holds then is no
// document.
int ReplayScript(std::string_view script, const std::string& name, ReplayFormat format,
                 IStream* target, std::ostream& messages);

}  // namespace qm
