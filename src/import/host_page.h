// One page of the host's document: making its container and drawing block, and finishing it with
// its layers, pen table and attributes.
//
// CreatePage, CloseBlock, FinishPage; EndPage and the end of the file share them. Test:
// tests/import/hpgl_reader_test.cpp.
#pragma once

#include <qmfilter.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "interfaces/drawing_handover.h"
#include "platform/com_ptr.h"
#include "platform/prog_id.h"

namespace qm {

// Pen numbers are layer numbers; larger ones have no layer.
inline constexpr std::size_t kLayers = 256;

// Attribute flags as the host wants them: document structure, and everything else.
inline constexpr LONG kStructureFlags = 2;
inline constexpr LONG kPlainFlags = 0;

struct Layer {
    std::uint32_t colour = 0;  // 0x00BBGGRR, current when the layer was first used on the page
    bool defined = false;
};
using LayerTable = std::array<Layer, kLayers>;
using PenFlags = std::array<bool, kLayers>;

// A page being filled. All pointers are null when the host could not make one of the objects.
struct HostPage {
    ComPtr<IQmBuildVectorData> block;
    // The same block, when it is our own host's and nobody stands in front of it.
    ComPtr<DrawingHandover> handover;
    ComPtr<IQmDocument> container;
};

// What a page's layers, pens and attributes are made from.
struct PageFacts {
    std::int32_t pageCounter = 0;  // page ends before this one
    const LayerTable& layers;
    std::int32_t highestLayer = 0;
    const PenFlags& penUsed;
    bool rasterPresent = false;
    bool searchable = false;
    std::int32_t rotation = 0;  // RO, degrees
};

// CreateChild's value for the drawing block of the first page and of the others.
inline constexpr LONG kFirstBlock = 0;
inline constexpr LONG kFurtherBlock = 10000;

// Makes a "Tessel.QmContainer" and its drawing block. The block is null when the host refused
// either; the container can then still be set. Throws std::bad_alloc.
HostPage CreatePage(LONG blockValue);

// Tells the block that its data is complete and asks whether it has any. A failure, also for want
// of a block, leaves `empty` alone.
HRESULT CloseBlock(const HostPage& page, bool& empty);

// Adds the page to `root` as "Page N" and gives it its layers, pens and attributes. Throws
// std::bad_alloc.
void FinishPage(IQmDocument& root, IQmDocument& container, const PageFacts& facts);

// A new object of the class that `progId` names, or null.
template <typename T>
ComPtr<T> CreateHostObject(const wchar_t* progId) noexcept {
    ComPtr<T> object;
    CLSID clsid;
    if (SUCCEEDED(ClassIdFromProgId(progId, &clsid))) {
        CoCreateInstance(clsid, nullptr, CLSCTX_ALL, __uuidof(T), object.PutVoid());
    }
    return object;
}

}  // namespace qm
