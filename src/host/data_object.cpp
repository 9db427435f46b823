#include "host/data_object.h"

#include <objbase.h>
#include <shlwapi.h>

#include <limits>
#include <new>

#include "platform/bstr.h"

namespace qm {

HRESULT DataObject::get_Storage(IUnknown** value) noexcept { return storage_.CopyTo(value); }

HRESULT DataObject::get_StorageName(BSTR* value) noexcept {
    if (value == nullptr) return E_POINTER;
    *value = nullptr;
    return Guarded([&]() -> HRESULT {
        *value = Bstr(path_).Detach();
        return S_OK;
    });
}

HRESULT OpenFileObject(const std::wstring& path, ComPtr<IQmDataObject>& object) noexcept {
    return Guarded([&]() -> HRESULT {
        ComPtr<IStream> stream;
        const HRESULT status =
            SHCreateStreamOnFileW(path.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, stream.Put());
        if (FAILED(status)) return status;
        object = MakeObject<DataObject>(std::move(stream), path);
        return object ? S_OK : E_OUTOFMEMORY;
    });
}

HRESULT OpenMemoryObject(std::string_view bytes, ComPtr<IQmDataObject>& object) noexcept {
    if (bytes.size() > std::numeric_limits<ULONG>::max()) return E_OUTOFMEMORY;
    ComPtr<IStream> stream;
    HRESULT status = CreateStreamOnHGlobal(nullptr, TRUE, stream.Put());
    if (FAILED(status)) return status;
    status = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    if (FAILED(status)) return status;
    status = stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr);
    if (FAILED(status)) return status;
    object = MakeObject<DataObject>(std::move(stream), std::wstring());
    return object ? S_OK : E_OUTOFMEMORY;
}

}  // namespace qm
