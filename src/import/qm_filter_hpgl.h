// CQmFilterHPGL: the component that opens plot files for the host engine.
//
// OpenDocument recognises the file and prepares the document, GetNode reads it and builds the
// pages; qmfilter.idl holds the contract. CreateQmFilterHPGL makes one. Test:
// tests/import/qm_filter_hpgl_test.cpp.
#pragma once

#include <qmfilter.h>

#include <memory>
#include <string_view>
#include <utility>

#include "import/hpgl_reader.h"
#include "interpreter/plot_notes.h"
#include "interpreter/reading.h"
#include "platform/com_ptr.h"
#include "platform/variant.h"
#include "server/event_source.h"

namespace qm {

class CQmFilterHPGL : public EventSource<_IQmFilterEvents, IQmFilter> {
  public:
    HRESULT STDMETHODCALLTYPE OpenDocument(IQmDataObject* dataObject, IQmDocument* document,
                                           LONG flags) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNode(VARIANT node, LONG loadFlag,
                                      IUnknown** object) noexcept override;

    // How plots are read from now on; not for the engine, which has its own reading.
    void SetReading(const Reading& reading) { reading_ = reading; }
    // Where GetNode puts the notes of each plot that it has read; null for nowhere.
    void SetNotes(std::shared_ptr<PlotNotes> notes) { notes_ = std::move(notes); }

    // Tells every connected sink that `percent` (1 to 99) of the file is read. `abort` goes in with
    // the answer so far and comes back as it or, once a sink asked to stop, as VARIANT_TRUE: no
    // sink can take another one's wish back.
    void FireProgress(LONG percent, VARIANT_BOOL& abort) noexcept;

  private:
    HRESULT Open();
    HRESULT Recognise();
    HRESULT PrepareDocument();
    HRESULT FindPage(std::wstring_view name, IUnknown** object) const;
    HRESULT Load(IUnknown** object);
    HRESULT LoadFrom(HPGLReader& reader, const HostPage& page);
    void Rewind() const;
    bool IsZip() const;
    std::uint32_t PackedPlotBytes() const;
    Bstr StorageName() const;

    Reading reading_;
    std::shared_ptr<PlotNotes> notes_;
    ComPtr<IQmDataObject> dataObject_;
    ComPtr<IStream> stream_;  // the data object's storage
    ComPtr<IQmDocument> document_;
    ComPtr<IQmDocument> contents_;  // pages are added under it
    bool fromArchive_ = false;      // a zip archive that holds the plot
    bool loaded_ = false;           // GetNode has built the pages
    bool busy_ = false;             // in OpenDocument or in GetNode's load
};

// Makes a CQmFilterHPGL and returns its interface `riid`: IQmFilter, IConnectionPointContainer or
// IUnknown, and with an `outer` object that takes it in IUnknown only (else CLASS_E_NOAGGREGATION).
// E_NOINTERFACE, E_OUTOFMEMORY, E_POINTER.
HRESULT CreateQmFilterHPGL(IUnknown* outer, REFIID riid, void** object) noexcept;

// A filter with a reading of its own, for programs that link it; null when memory ran out.
ComPtr<IQmFilter> MakeQmFilterHPGL(const Reading& reading) noexcept;
// A class factory of such filters, which are no part of other objects; null likewise. They put
// their notes into `notes`, which may be null.
ComPtr<IClassFactory> MakeQmFilterFactory(const Reading& reading,
                                          std::shared_ptr<PlotNotes> notes = nullptr) noexcept;

}  // namespace qm
