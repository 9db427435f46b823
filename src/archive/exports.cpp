// The exported functions of the archive library; archive_api.h describes them. exports.map and
// exports.def name them for the two linkers.
#include <algorithm>
#include <map>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "archive/archive_api.h"
#include "archive/zip_archive.h"

namespace {

using qm::archive::EntryInfo;
using qm::archive::Handle;
using qm::archive::kNoArchive;
using qm::archive::ZipArchive;

using SharedArchive = std::shared_ptr<const ZipArchive>;

constexpr std::size_t kMaxOpen = 1000;

// The open archives by handle. Shared, so that one being used survives its closing on another
// thread.
class Archives {
  public:
    Handle Add(SharedArchive archive) {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (open_.size() >= kMaxOpen) return kNoArchive;
        do {
            last_ = last_ == INT32_MAX ? 1 : last_ + 1;
        } while (open_.count(last_) != 0);
        open_.emplace(last_, std::move(archive));
        return last_;
    }
    SharedArchive Find(Handle handle) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = open_.find(handle);
        return found == open_.end() ? nullptr : found->second;
    }
    SharedArchive Remove(Handle handle) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = open_.find(handle);
        if (found == open_.end()) return nullptr;
        SharedArchive archive = std::move(found->second);
        open_.erase(found);
        return archive;
    }

  private:
    std::mutex mutex_;
    std::map<Handle, SharedArchive> open_;
    Handle last_ = kNoArchive;
};

Archives& Open() {
    static Archives archives;
    return archives;
}

// `work() -> int32_t`, with exhausted memory as 0.
template <typename Work>
std::int32_t Quietly(Work&& work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

bool IsPlainName(std::wstring_view name) {
    return !name.empty() && name.find_first_of(L"/\\:") == std::wstring_view::npos;
}

}  // namespace

extern "C" {

qm::archive::OpenArchiveFunction OpenArchive;
qm::archive::GetNumberOfFilesFunction GetNumberOfFiles;
qm::archive::GetFileInfoFunction GetFileInfo;
qm::archive::ExtractToFileFunction ExtractToFile;
qm::archive::CloseArchiveFunction CloseArchive;

Handle OpenArchive(const wchar_t* path) {
    return Quietly([=] {
        if (path == nullptr) return kNoArchive;
        auto archive = std::make_shared<ZipArchive>(path);
        return *archive ? Open().Add(std::move(archive)) : kNoArchive;
    });
}

std::int32_t GetNumberOfFiles(Handle archive) {
    const SharedArchive open = Open().Find(archive);
    return open ? open->Count() : 0;
}

std::int32_t GetFileInfo(Handle archive, std::int32_t index, wchar_t* name, std::int64_t* size,
                         std::int64_t* packedSize) {
    if (name == nullptr || size == nullptr || packedSize == nullptr) return 0;
    *name = L'\0';
    *size = *packedSize = -1;
    return Quietly([=] {
        const SharedArchive open = Open().Find(archive);
        const auto info = open ? open->Info(index) : std::nullopt;
        if (!info) return 0;
        // A zero in the name ends it, as it does for every reader of the buffer.
        const std::size_t length = std::min(info->name.size(), qm::archive::kNameCharacters - 1);
        *std::copy_n(info->name.data(), length, name) = L'\0';
        *size = info->size;
        *packedSize = info->packedSize;
        return 1;
    });
}

std::int32_t ExtractToFile(Handle archive, std::int32_t index, const wchar_t* directory,
                           const wchar_t* name) {
    if (directory == nullptr || name == nullptr) return 0;
    return Quietly([=] {
        const SharedArchive open = Open().Find(archive);
        if (!open || !IsPlainName(name)) return 0;
        const std::wstring path = std::wstring(directory) + L'/' + name;
        return open->Extract(index, path, open->MaxBytes()) ? 1 : 0;
    });
}

std::int32_t CloseArchive(Handle archive) { return Open().Remove(archive) ? 1 : 0; }

}  // extern "C"
