// StatusName: a status code as people and scripts read it. Test: tests/trace/host_trace_test.cpp.
#pragma once

#include <windows.h>

#include <string>

namespace qm {

// "S_OK", "E_FAIL", ... for the codes this module and its hosts use, "0x8003001D" for all others.
std::string StatusName(HRESULT status);

}  // namespace qm
