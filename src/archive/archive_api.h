// The five functions that the import filter calls in the archive library "QmZipx.dll", for both
// sides: the filter looks them up by name at run time, this folder exports them.
//
// Entries are numbered from 0 in the archive's own order. Every function fails quietly: it returns
// kNoArchive or 0 and throws nothing. A handle belongs to the process; different handles may be
// used on different threads. Test: tests/archive/archive_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qm::archive {

// As LoadLibraryA takes it; elsewhere than on Windows the file is QmZipx.so.
inline constexpr char kLibraryName[] = "QmZipx.dll";

// An open archive: 32 bits, never a pointer.
using Handle = std::int32_t;
inline constexpr Handle kNoArchive = 0;

// Room for an entry's name in GetFileInfo, the closing zero included. A longer name is cut.
inline constexpr std::size_t kNameCharacters = 260;

// What one entry may grow to when it is extracted, whatever its size field claims: 1 GiB. Plots are
// far smaller; a few kilobytes of a hostile archive can claim and yield much more.
inline constexpr std::int64_t kMaxExtractedBytes = std::int64_t{1} << 30;
// And what it may grow to in an archive of so few bytes: 4 MiB and 128 times as much. Drawings
// shrink to a tenth, pictures of scanned sheets to a hundredth.
inline constexpr std::int64_t kExtractedBytes = std::int64_t{4} << 20;
inline constexpr std::int64_t kExtractedPerByte = 128;

// OpenArchive: opens the zip archive at `path` for reading. kNoArchive when it is none, its
// directory is damaged, or 1000 are open already.
using OpenArchiveFunction = Handle(const wchar_t* path);

// GetNumberOfFiles: entries of the archive, folders included; 0 for an unknown handle.
using GetNumberOfFilesFunction = std::int32_t(Handle archive);

// GetFileInfo: the name of entry `index` as the archive has it, folders and all, in
// `name` (kNameCharacters), and its unpacked and packed sizes in bytes as the archive claims them,
// -1 where it claims none. 0, and an empty name, for an entry that does not exist. Names are data:
// none of these functions uses one as a path.
using GetFileInfoFunction = std::int32_t(Handle archive, std::int32_t index, wchar_t* name,
                                         std::int64_t* size, std::int64_t* packedSize);

// ExtractToFile: unpacks entry `index` to the file `name`, a plain file name, in the folder
// `directory` (no closing separator), replacing what is there. Size fields are not believed: the
// data run to their own end and must have the right checksum. 0, and no such file is left, when
// the entry is encrypted, damaged or larger than that. 0, and nothing is touched, for
// an unknown handle or a name with a separator.
using ExtractToFileFunction = std::int32_t(Handle archive, std::int32_t index,
                                           const wchar_t* directory, const wchar_t* name);

// CloseArchive: forgets the handle; 0 for an unknown one.
using CloseArchiveFunction = std::int32_t(Handle archive);

}  // namespace qm::archive
