// DataObject: what the embedded host gives a filter to read or to write, a stream and the path
// behind it. Test: tests/host/open_plot_test.cpp.
#pragma once

#include <ole2.h>

#include <string>
#include <string_view>

#include "platform/com_object.h"
#include "qmfilter.h"

namespace qm {

class DataObject final : public ComObject<IQmDataObject> {
  public:
    // `storage` is to answer IStream. `path` may be empty when no file stands behind it.
    DataObject(ComPtr<IUnknown> storage, std::wstring path) noexcept
        : storage_(std::move(storage)), path_(std::move(path)) {}

    HRESULT STDMETHODCALLTYPE get_Storage(IUnknown** value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_StorageName(BSTR* value) noexcept override;

  private:
    ComPtr<IUnknown> storage_;
    std::wstring path_;
};

// An existing file for reading. `object` stays null after a failure, which is the file system's.
HRESULT OpenFileObject(const std::wstring& path, ComPtr<IQmDataObject>& object) noexcept;
// Bytes in memory (copied), for tests and for plots that came over a network. E_OUTOFMEMORY.
HRESULT OpenMemoryObject(std::string_view bytes, ComPtr<IQmDataObject>& object) noexcept;

}  // namespace qm
