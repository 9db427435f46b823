// PenTable: the pens of a page or of a print set-up ("Tessel.QmPenTable"). Test:
// tests/host/document_test.cpp.
#pragma once

#include <vector>

#include "host/attribute_map.h"
#include "platform/com_object.h"
#include "qmfilter.h"

namespace qm {

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

    std::vector<Pen> pens_;
    AttributeMap attributes_;
};

}  // namespace qm
