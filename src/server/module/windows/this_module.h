// The file this code was loaded from: its path and the version in its version resource.
//
// Test: tests/server/windows/registration_test.cpp.
#pragma once

#include <string>

namespace qm {

// Full path; empty when the system does not tell. Throws std::bad_alloc.
std::wstring ModulePath();
// File version of `path` as "%u.%u.%u.%u"; empty without a version resource. Throws std::bad_alloc.
std::wstring FileVersion(const std::wstring& path);

}  // namespace qm
