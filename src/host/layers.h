// LayerCollection: the layers of a page ("Tessel.QmLayers"). Test: tests/host/document_test.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/com_object.h"
#include "qmfilter.h"

namespace qm {

struct PageLayer {
    LONG number = 0;
    std::wstring name;
    ULONG colour = 0;  // 0x00BBGGRR
    bool visible = true;
};

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
};

// All layers of a collection, anybody's; none for a null pointer. Throws std::bad_alloc.
std::vector<PageLayer> ReadLayers(IQmLayers* layers);

}  // namespace qm
