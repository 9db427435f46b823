// See source_and_events.h.
#include "host/source_and_events.h"

#include <objbase.h>
#include <shlwapi.h>

#include <limits>

#include "platform/variant.h"

namespace qm {

namespace {

HRESULT MakeSource(const ComPtr<IStream>& stream, const std::wstring& path,
                   IQmDataObject** object) noexcept {
    return Guarded([&]() -> HRESULT {
        *object = MakeObject<DataObject>(stream, path).Detach();
        return *object != nullptr ? S_OK : E_OUTOFMEMORY;
    });
}

}  // namespace

HRESULT DataObject::get_Storage(IUnknown** value) noexcept { return storage_.CopyTo(value); }

HRESULT DataObject::get_StorageName(BSTR* value) noexcept {
    if (value == nullptr) return E_POINTER;
    *value = nullptr;
    return Guarded([&]() -> HRESULT {
        *value = Bstr(path_).Detach();
        return S_OK;
    });
}

HRESULT ProgressSink::Progress(LONG percent, VARIANT_BOOL* abort) noexcept {
    if (abort == nullptr) return E_POINTER;
    // The value that comes in is the answer so far: another sink's wish to stop is kept.
    if (callback_ && !callback_(static_cast<int>(percent))) *abort = VARIANT_TRUE;
    return S_OK;
}

SinkConnection::SinkConnection(IUnknown* source, REFIID events, IUnknown* sink) noexcept {
    const auto container = Query<IConnectionPointContainer>(source);
    if (!container) return;
    ComPtr<IConnectionPoint> point;
    if (FAILED(container->FindConnectionPoint(events, point.Put()))) return;
    if (SUCCEEDED(point->Advise(sink, &cookie_))) point_ = std::move(point);
}

SinkConnection::~SinkConnection() {
    if (point_) point_->Unadvise(cookie_);
}

HRESULT OpenFileObject(const std::wstring& path, IQmDataObject** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    ComPtr<IStream> stream;
    const HRESULT status =
        SHCreateStreamOnFileW(path.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, stream.Put());
    return FAILED(status) ? status : MakeSource(stream, path, object);
}

HRESULT OpenMemoryObject(std::string_view bytes, IQmDataObject** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (bytes.size() > std::numeric_limits<ULONG>::max()) return E_OUTOFMEMORY;
    ComPtr<IStream> stream;
    HRESULT status = CreateStreamOnHGlobal(nullptr, TRUE, stream.Put());
    if (FAILED(status)) return status;
    status = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    if (FAILED(status)) return status;
    status = stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr);
    return FAILED(status) ? status : MakeSource(stream, {}, object);
}

}  // namespace qm
