// CQmFilterSaveHPGL and CQmFilterSaveHPRTL: the two export components.
//
// CreateDocument reads the settings, writes the file header and hands out the CQmSaveStructure that
// the host walks its document into; CloseDocument writes the trailer. Both share SaveFilter and
// differ in the texts and the settings that they read. A sink of _IQmFilterSaveEvents can connect,
// but nothing is ever fired: the host walks the document and knows how far it is. Neither class is
// final, so that both can be aggregated. Test: tests/export/framework_test.cpp.
#pragma once

#include <qmfilter.h>

#include <string_view>

#include "export/export_settings.h"
#include "server/event_source.h"

namespace qm {

class SaveFilter : public EventSource<_IQmFilterSaveEvents, IQmFilterSave> {
  public:
    HRESULT STDMETHODCALLTYPE CreateDocument(IQmDataObject* target, IUnknown* settings,
                                             IUnknown** saveObject) noexcept override;
    HRESULT STDMETHODCALLTYPE CloseDocument() noexcept override;

  protected:
    struct Texts {
        std::string_view header;
        std::string_view trailer;
    };
    explicit SaveFilter(const Texts& texts) : texts_(texts) {}

    // Takes over what the filter knows; `settings` is null when the host gave none.
    virtual void Configure(IQmAttributes* settings, ExportSettings& structure) noexcept = 0;

  private:
    Texts texts_;
    ComPtr<IStream> stream_;  // kept until the filter is released
};

// HP-GL/2: vectors; pictures are dropped.
class CQmFilterSaveHPGL : public SaveFilter {
  public:
    CQmFilterSaveHPGL();

  protected:
    void Configure(IQmAttributes* settings, ExportSettings& structure) noexcept override;

  private:
    // Kept from one document to the next when its settings do not name them.
    bool usePenTable_ = false;
    bool useLineWeights_ = false;
};

// HP-RTL: pictures between HP-GL/2 commands. Of the settings it reads "UserDPI" only.
class CQmFilterSaveHPRTL : public SaveFilter {
  public:
    CQmFilterSaveHPRTL();

  protected:
    void Configure(IQmAttributes* settings, ExportSettings& structure) noexcept override;
};

}  // namespace qm
