// Opening and reading by POSIX file descriptor: shared by the file handles and the file stream.
#pragma once

#include "qmfilter/portable/types.h"

// Opens a regular file (not a folder) by its wide name, with flags of open(2). -1 on failure, errno
// tells why.
int OpenDescriptor(LPCWSTR path, int flags) noexcept;
// Reads or writes until `bytes` are done, the file ends or an error comes; interruptions are
// retried. Bytes done, or -1 when an error came before the first one.
std::int64_t ReadDescriptor(int descriptor, void* buffer, ULONG bytes) noexcept;
std::int64_t WriteDescriptor(int descriptor, const void* buffer, ULONG bytes) noexcept;
// Size of the file in bytes, or -1.
std::int64_t DescriptorSize(int descriptor) noexcept;
