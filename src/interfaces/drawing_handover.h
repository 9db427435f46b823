// DrawingHandover: what the import filter gives our own drawing block at once, where the host's
// interface takes it piece by piece or as a copy.
//
// The embedded host's block answers to it (host/drawing_block.h), the filter asks for it
// (import/host_page.cpp). Nobody else needs to know it: any other host, and whoever stands between
// the filter and our host, gets the calls of IQmBuildVectorData. Test:
// tests/import/hpgl_reader_test.cpp.
#pragma once

#include <qmfilter.h>

#include <cstddef>
#include <string_view>

#include "common/geometry.h"
#include "platform/global_block.h"

namespace qm {

// The methods answer what those of IQmBuildVectorData would.
struct DrawingHandover : IUnknown {
    // AppendLine for every line of a letter's strokes, of which there is at least one; `box`
    // receives what lies around them, on success.
    virtual HRESULT STDMETHODCALLTYPE AppendLetter(const Strokes& strokes, BoxI& box) noexcept = 0;
    // AppendTextElement with `text` in Latin-1.
    virtual HRESULT STDMETHODCALLTYPE AppendText(const BoxI& box,
                                                 std::string_view text) noexcept = 0;
    // AppendDib with the first `size` bytes of `dib`, which is the block's from now on, also after
    // a failure.
    virtual HRESULT STDMETHODCALLTYPE AppendOwnedDib(const BoxI& box, GlobalBlock dib,
                                                     std::size_t size,
                                                     LONG rasterOperation) noexcept = 0;
};

}  // namespace qm

__CRT_UUID_DECL(qm::DrawingHandover, 0x6e7c5b1a, 0x0f2d, 0x4c55, 0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3,
                0x81, 0x13)
