// See plots.h.
#include "cli/plots.h"

#include <shlwapi.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "cli/archive_diagnosis.h"
#include "cli/console.h"
#include "cli/reading_options.h"
#include "host/document_node.h"
#include "host/source_and_events.h"
#include "import/qm_filter_hpgl.h"
#include "platform/com_ptr.h"
#include "platform/text.h"
#include "platform/write_only_stream.h"

namespace qm::cli {

namespace {

// A file that the filter takes for a plot, whatever is in it. Whoever rewinds it first meets the
// commands that detection wants in front of the file; whoever rewinds it again meets the file
// alone. The filter rewinds once to detect and once to read.
class ForcedStream final : public WriteOnlyStream {
  public:
    explicit ForcedStream(ComPtr<IStream> file) noexcept : file_(std::move(file)) {}

    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG count, ULONG* done) noexcept override {
        if (front_.empty()) return file_->Read(buffer, count, done);
        const std::size_t taken = std::min<std::size_t>(count, front_.size());
        std::memcpy(buffer, front_.data(), taken);
        front_.remove_prefix(taken);
        if (done != nullptr) *done = static_cast<ULONG>(taken);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                   ULARGE_INTEGER* position) noexcept override {
        if (origin == STREAM_SEEK_SET) {
            front_ = rewound_ ? std::string_view() : kFront;
            rewound_ = true;
        }
        return file_->Seek(move, origin, position);
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* status, DWORD flags) noexcept override {
        return file_->Stat(status, flags);
    }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) noexcept override {
        return E_NOTIMPL;
    }

  private:
    static constexpr std::string_view kFront = "IN;IN;IN;IN;IN;IN;";

    ComPtr<IStream> file_;
    std::string_view front_;
    bool rewound_ = false;
};

}  // namespace

OptionGroup OpenGroup(OpenOptions& options) {
    OptionGroup group = ReadingOptions(options.reading);
    group.options.push_back(Flag("force", 0,
                                 "Read a file that detection does not know: tiny plots, bare "
                                 "HP-RTL and PCL picture jobs",
                                 options.force));
    return group;
}

Components::Components(const Reading& reading) {
    const auto factory = MakeQmFilterFactory(reading, notes_);
    if (!factory) throw std::bad_alloc();
    const HRESULT status =
        SUCCEEDED(host_.Status())
            ? CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                    REGCLS_MULTIPLEUSE, &cookie_)
            : host_.Status();
    if (FAILED(status)) throw ToolError("the filter components cannot be registered");
}

Components::~Components() { CoRevokeClassObject(cookie_); }

namespace {

// Writers are let in: a copy of standard input is still open for writing.
ComPtr<SourceStream> OpenStream(const InputFile& file) {
    ComPtr<IStream> stream;
    const HRESULT status =
        SHCreateStreamOnFileW(Utf8ToWide(file.Path()).c_str(), STGM_READ, stream.Put());
    if (FAILED(status)) throw ToolError(file.Name() + ": cannot be read: " + StatusName(status));
    auto source = MakeObject<SourceStream>(stream);
    if (!source) throw std::bad_alloc();
    return source;
}

void ThrowFailureOf(const SourceStream& stream, const InputFile& file) {
    if (FAILED(stream.Failure())) {
        throw ToolError(file.Name() + ": cannot be read: " + StatusName(stream.Failure()));
    }
}

ToolError OpeningError(const InputFile& file, HRESULT status) {
    return ToolError(file.Name() + ": cannot be opened: " + StatusName(status), kExitNotAPlot);
}

// The filter refuses with one status what is no plot file and what it cannot unpack.
[[noreturn]] void ThrowRefusal(const InputFile& file, bool forced) {
    if (const auto problem = DiagnoseArchive(file)) {
        if (problem->holdsPlot) {
            throw ToolError(file.Name() + ": the archive cannot be read: " + problem->cause,
                            kExitNotAPlot);
        }
        throw NotAPlotError(file.Name() + ": not a plot file: " + problem->cause);
    }
    throw NotAPlotError(file.Name() + ": not a plot file" +
                        (forced ? "" : "; --force reads it all the same"));
}

std::vector<std::string> Texts(const PlotNotes& notes) {
    std::vector<std::string> texts;
    if (notes.scaleIgnored) {
        texts.emplace_back(
            "a scale (SC) without scaling points (IP) in front is ignored, as the "
            "document engine does; --reading plotter scales");
    }
    if (!notes.limitsMet.empty()) {
        texts.push_back("asks for too much for its size; not all is drawn of its " +
                        notes.limitsMet);
    }
    return texts;
}

}  // namespace

std::string FormatOf(const InputFile& file) {
    const auto stream = OpenStream(file);
    const auto source =
        MakeObject<DataObject>(ComPtr<IStream>(stream.Get()), Utf8ToWide(file.Path()));
    const auto document = MakeObject<DocumentNode>(SHORT{QM_DOCUMENT});
    if (!source || !document) throw std::bad_alloc();
    ComPtr<IQmFilter> filter;
    if (FAILED(CreateQmFilterHPGL(nullptr, __uuidof(IQmFilter), filter.PutVoid()))) {
        throw std::bad_alloc();
    }
    const HRESULT status = filter->OpenDocument(source.Get(), document.Get(), 0);
    ThrowFailureOf(*stream.Get(), file);
    if (status == E_FAIL) return {};
    if (FAILED(status)) throw OpeningError(file, status);
    const Variant* const format = document->Attributes().Find(L"Format");
    return format == nullptr ? std::string() : WideToUtf8(format->AsText());
}

PlotSource::PlotSource(const InputFile& file, bool force) : file_(file), stream_(OpenStream(file)) {
    ComPtr<IStream> stream(stream_.Get());
    if (force && FormatOf(file).empty() && !DiagnoseArchive(file)) {
        stream = ComPtr<IStream>(MakeObject<ForcedStream>(stream).Get());
        if (!stream) throw std::bad_alloc();
    }
    object_ = MakeObject<DataObject>(stream, Utf8ToWide(file.Path()));
    if (!object_) throw std::bad_alloc();
}

void PlotSource::ThrowFailure() const { ThrowFailureOf(*stream_.Get(), file_); }

LoadedPlot LoadPlot(const Components& components, const InputFile& file, bool force,
                    const std::function<void(int percent)>& progress) {
    LoadedPlot loaded;
    const PlotSource source(file, force);
    const HRESULT status = OpenPlot(
        source.Object(),
        [&](int percent) {
            if (progress) progress(percent);
            return !Interrupted();
        },
        loaded.plot);
    ThrowIfInterrupted();
    source.ThrowFailure();
    if (status == E_FAIL) ThrowRefusal(file, force);
    if (status == E_OUTOFMEMORY) throw std::bad_alloc();
    if (status != S_OK) throw OpeningError(file, status);
    loaded.notes = Texts(components.Notes());
    return loaded;
}

}  // namespace qm::cli
