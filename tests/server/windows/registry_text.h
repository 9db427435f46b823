// The registry as text, a value a line, so that tests can compare whole branches.
#pragma once

#include <windows.h>

#include <string>

namespace qm {

// Every value in and below `path`, in the order of their names:
//   Key\Sub [Name] = text      Key\Sub [Name] = dword 16      Key\Sub      (a key without values)
// Names of keys are relative to `path`. Empty when there is no such key.
std::string RegistryText(HKEY root, const std::wstring& path);

// Names of the keys right below `path`, a line each.
std::string RegistryKeys(HKEY root, const std::wstring& path);

}  // namespace qm
