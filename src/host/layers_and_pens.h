// LayerCollection ("Tessel.QmLayers") and PenTable ("Tessel.QmPenTable"): the layers and the pens
// of a page; a pen table also belongs to a print set-up. Test: tests/host/document_test.cpp.
#pragma once

#include <qmfilter.h>

#include <vector>

#include "host/host_object.h"
#include "host/open_plot.h"
#include "platform/com_object.h"

namespace qm {

class LayerCollection final : public ComObject<IQmLayers> {
  public:
    HRESULT STDMETHODCALLTYPE AddLayer(LONG number, BSTR name, ULONG colour,
                                       LONG visible) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCount(LONG* count) noexcept override;
    // Any of the out parameters may be null.
    HRESULT STDMETHODCALLTYPE GetLayer(LONG index, LONG* number, BSTR* name, ULONG* colour,
                                       LONG* visible) noexcept override;

  private:
    std::vector<PageLayer> layers_;
    bool complete_ = true;
};

// All layers of a collection, anybody's; none for a null pointer. Throws std::bad_alloc.
std::vector<PageLayer> ReadLayers(IQmLayers* layers);

class PenTable final : public ComObject<IQmPenTable, IQmAttributes> {
  public:
    HRESULT STDMETHODCALLTYPE AddPen(LONG pen, ULONG colour, DOUBLE width,
                                     ULONG style) noexcept override;
    // Any of the out parameters may be null.
    HRESULT STDMETHODCALLTYPE GetPen(LONG pen, LONG* style, LONG* colour,
                                     DOUBLE* width) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPenCount(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPenNumber(LONG index, LONG* pen) noexcept override;

    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override {
        return attributes_.Put(name, value, flags);
    }
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG, VARIANT* value) noexcept override {
        return attributes_.Get(name, value);
    }

  private:
    struct Pen {
        LONG number = 0;
        ULONG colour = 0;
        DOUBLE width = 0.0;
        ULONG style = 0;
    };
    Pen* Find(LONG pen) noexcept;

    bool complete_ = true;

    std::vector<Pen> pens_;
    AttributeMap attributes_;
};

}  // namespace qm
