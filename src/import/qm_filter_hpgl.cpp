// See qm_filter_hpgl.h.
#include "import/qm_filter_hpgl.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "import/plot_archive.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "server/class_factory.h"

namespace qm {

namespace {

constexpr wchar_t kFirstPage[] = L"Page 1";
constexpr LONG kDocumentKind = 3;

HRESULT Put(IQmDocument& target, std::wstring_view name, const Variant& value) {
    return target.PutAttribute(Bstr(name).Get(), value.Get(), kStructureFlags);
}

// The page that the argument of GetNode names; nothing for a type that names none.
std::optional<std::wstring> PageOf(const VARIANT& node) {
    switch (node.vt) {
        case VT_EMPTY:
        // Quirk: true and false both mean the first page.
        case VT_BOOL:
            return kFirstPage;
        case VT_BSTR:
            return std::wstring(ViewOf(node.bstrVal));
        default:
            return std::nullopt;
    }
}

// True until the end of its scope. Sinks are called in the middle of a load, and one that came
// back with another load would move the stream under the first.
class BusyScope {
  public:
    explicit BusyScope(bool& busy) : busy_(busy) { busy_ = true; }
    ~BusyScope() { busy_ = false; }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

  private:
    bool& busy_;
};

}  // namespace

// --- Opening -------------------------------------------------------------------------------------

HRESULT CQmFilterHPGL::OpenDocument(IQmDataObject* dataObject, IQmDocument* document,
                                    LONG /*flags*/) noexcept {
    if (dataObject == nullptr || document == nullptr || busy_) return E_FAIL;
    const BusyScope scope(busy_);
    dataObject_ = ComPtr<IQmDataObject>(dataObject);
    document_ = ComPtr<IQmDocument>(document);
    contents_.Reset();
    fromArchive_ = false;
    loaded_ = false;
    return Guarded([this] { return Open(); });
}

HRESULT CQmFilterHPGL::Open() {
    ComPtr<IUnknown> storage;
    dataObject_->get_Storage(storage.Put());
    stream_ = storage.As<IStream>();
    if (!stream_) return E_FAIL;
    const HRESULT status = Recognise();
    return status == S_OK ? PrepareDocument() : status;
}

HRESULT CQmFilterHPGL::Recognise() {
    Rewind();
    if (std::make_unique<HPGLReader>(stream_)->Detect() != 0) {
        Put(*document_, L"Format", Variant::Text(L"HPGL/2"));
        return S_OK;
    }
    if (!IsZip() || !PlotArchive(StorageName().View()).HasPlot()) return E_FAIL;
    fromArchive_ = true;
    Put(*document_, L"Format", Variant::Text(L"Nemetschek Allplan"));
    return S_OK;
}

HRESULT CQmFilterHPGL::PrepareDocument() {
    Put(*document_, L"DocType", Variant::Integer(kDocumentKind));
    ComPtr<IUnknown> child;
    document_->CreateChild(QM_CONTENTS, Variant::Text(L"Contents").Get(),
                           Variant::Boolean(true).Get(), child.Put());
    contents_ = child.As<IQmDocument>();
    return contents_ ? S_OK : E_FAIL;
}

// Detection and the load read the file from its start, wherever the last reader left the stream.
void CQmFilterHPGL::Rewind() const { stream_->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr); }

bool CQmFilterHPGL::IsZip() const {
    constexpr unsigned char kLocalHeader[] = {0x50, 0x4B, 0x03, 0x04};
    unsigned char head[sizeof kLocalHeader] = {};
    Rewind();
    ULONG done = 0;
    stream_->Read(head, sizeof head, &done);
    return done == sizeof head && std::memcmp(head, kLocalHeader, sizeof head) == 0;
}

// What the work for a plot in an archive grows with: what drawings shrink to when they are packed,
// so that a few packed bytes cannot buy more.
std::uint32_t CQmFilterHPGL::PackedPlotBytes() const {
    constexpr std::uint64_t kTimes = 16;
    STATSTG status{};
    if (FAILED(stream_->Stat(&status, STATFLAG_NONAME))) return 0;
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(kTimes * status.cbSize.QuadPart, UINT32_MAX));
}

Bstr CQmFilterHPGL::StorageName() const {
    Bstr name;
    dataObject_->get_StorageName(name.Put());
    return name;
}

// --- Nodes ---------------------------------------------------------------------------------------

HRESULT CQmFilterHPGL::GetNode(VARIANT node, LONG /*loadFlag*/, IUnknown** object) noexcept {
    if (object != nullptr) *object = nullptr;
    if (!contents_ || busy_) return E_FAIL;
    const ComPtr<IQmFilter> self(this);  // a Progress sink may release the host's last reference
    return Guarded([&]() -> HRESULT {
        const auto name = PageOf(node);
        if (!name) return E_FAIL;
        if (loaded_) return FindPage(*name, object);
        const BusyScope scope(busy_);
        return Load(object);
    });
}

HRESULT CQmFilterHPGL::FindPage(std::wstring_view name, IUnknown** object) const {
    ComPtr<IUnknown> page;
    contents_->GetChild(QM_CONTAINER, Variant::Text(name).Get(), page.Put());
    if (!page) return E_FAIL;
    return object == nullptr ? S_OK : page.CopyTo(object);
}

HRESULT CQmFilterHPGL::Load(IUnknown** object) {
    const HostPage page = CreatePage(kFirstBlock);
    if (!page.block) return E_FAIL;
    // In this order: the reader closes the file before the file is deleted.
    TemporaryFile extracted;
    std::unique_ptr<HPGLReader> reader;
    if (fromArchive_) {
        extracted = PlotArchive(StorageName().View()).ExtractPlot();
        FileHandle file = FileHandle::OpenForReading(extracted.Path().c_str());
        if (!file) return E_FAIL;
        reader = std::make_unique<HPGLReader>(std::move(file));
        reader->SetBudgetBytes(PackedPlotBytes());
    } else {
        Rewind();
        reader = std::make_unique<HPGLReader>(stream_);
    }
    if (const HRESULT status = LoadFrom(*reader, page); FAILED(status)) return status;
    if (reader->Aborted()) return E_ABORT;
    if (reader->ReadFailed()) return E_FAIL;
    if (object == nullptr) return S_OK;
    return page.container->QueryInterface(__uuidof(IUnknown), reinterpret_cast<void**>(object));
}

HRESULT CQmFilterHPGL::LoadFrom(HPGLReader& reader, const HostPage& page) {
    reader.BeginDocument(contents_, page, this);
    reader.SetReading(reading_);
    if (reader.Interpret() == 0) return E_FAIL;
    if (notes_) *notes_ = reader.Notes();
    LONG pages = 0;
    if (FAILED(reader.FinishLastPage(pages))) return E_FAIL;
    Put(*contents_, L"TotalNodes", Variant::Integer(pages));
    // An aborted load counts as well: its finished pages stay in the document.
    loaded_ = true;
    return S_OK;
}

// --- Events --------------------------------------------------------------------------------------

void CQmFilterHPGL::FireProgress(LONG percent, VARIANT_BOOL& abort) noexcept {
    FireEvent([&](_IQmFilterEvents& sink) {
        VARIANT_BOOL answer = abort;
        sink.Progress(percent, &answer);
        if (answer != VARIANT_FALSE) abort = VARIANT_TRUE;
    });
}

HRESULT CreateQmFilterHPGL(IUnknown* outer, REFIID riid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return MakeComponent<CQmFilterHPGL>(outer, riid, object);
}

namespace {

ComPtr<IQmFilter> MakeFilter(const Reading& reading, std::shared_ptr<PlotNotes> notes) noexcept {
    const ComPtr<CQmFilterHPGL> filter = MakeObject<CQmFilterHPGL>();
    if (!filter) return nullptr;
    filter->SetReading(reading);
    filter->SetNotes(std::move(notes));
    return ComPtr<IQmFilter>(filter.Get());
}

class ReadingFactory final : public ComObject<IClassFactory> {
  public:
    ReadingFactory(const Reading& reading, std::shared_ptr<PlotNotes> notes) noexcept
        : reading_(reading), notes_(std::move(notes)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid,
                                             void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        const auto filter = MakeFilter(reading_, notes_);
        return filter ? filter->QueryInterface(riid, object) : E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) noexcept override { return S_OK; }

  private:
    const Reading reading_;
    const std::shared_ptr<PlotNotes> notes_;
};

}  // namespace

ComPtr<IClassFactory> MakeQmFilterFactory(const Reading& reading,
                                          std::shared_ptr<PlotNotes> notes) noexcept {
    return ComPtr<IClassFactory>(MakeObject<ReadingFactory>(reading, std::move(notes)).Get());
}

ComPtr<IQmFilter> MakeQmFilterHPGL(const Reading& reading) noexcept {
    return MakeFilter(reading, nullptr);
}

}  // namespace qm
