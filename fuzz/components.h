// Components: what a thread needs to open plots, for as long as it exists; Session checks besides
// that no object outlives it. For the targets and for the tests of faults and threads.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "host/open_plot.h"
#include "import/qm_filter_hpgl.h"
#include "interpreter/reading.h"
#include "platform/com_object.h"
#include "platform/write_only_stream.h"

namespace qm::fuzz {

// Ends the program with `message` when `fine` is false: a find, as a crash is one.
inline void Require(bool fine, const char* message) {
    if (fine) return;
    std::fprintf(stderr, "%s\n", message);
    std::abort();
}

// Put in front of everything that holds objects: none may be left at the end of the scope.
class NoLeak {
  public:
    NoLeak() = default;
    ~NoLeak() { Require(LiveObjectCount() == before_, "an object was not released"); }
    NoLeak(const NoLeak&) = delete;
    NoLeak& operator=(const NoLeak&) = delete;

  private:
    LONG before_ = LiveObjectCount();
};

// Takes what it is given.
class NullStream final : public WriteOnlyStream {
  public:
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG count, ULONG* done) noexcept override {
        if (done != nullptr) *done = count;
        return S_OK;
    }
};

class Components {
  public:
    Components() {
        CoRegisterClassObject(CLSID_QmFilterHPGL, MakeQmFilterFactory(qm::Reading()).Get(),
                              CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
    ~Components() { CoRevokeClassObject(cookie_); }
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

    // The pages of a plot; none when it is no plot.
    static OpenedPlot Open(std::string_view bytes) {
        OpenedPlot plot;
        ComPtr<IQmDataObject> source;
        if (SUCCEEDED(OpenMemoryObject(bytes, source.Put()))) OpenPlot(*source.Get(), {}, plot);
        return plot;
    }

  private:
    HostClasses classes_;
    DWORD cookie_ = 0;
};

class Session {
  public:
    static OpenedPlot Open(std::string_view bytes) { return Components::Open(bytes); }

  private:
    NoLeak noLeak_;
    Components components_;
};

}  // namespace qm::fuzz
