// See sections.h. What a file of AutoCAD 2004 (AC1018) must hold: tables with handles, two block
// records with their blocks, a root dictionary, and the plot style that layers refer to.
#include "render/dxf/sections.h"

#include <algorithm>
#include <cstdlib>

#include "render/dxf/colour_index.h"

namespace qm::dxf {

namespace {

// Below stand the fixed handles: tables 1 to 9, dictionaries A to D, entries of both from 10 on.
constexpr std::uint64_t kFirstFreeHandle = 0x100;

void WriteHeader(const PageTables& tables, const Placement& placement, GroupCodes& out) {
    // Millimetres; line weights show; a point is a dot.
    out.Pairs(
        "0=SECTION|2=HEADER|9=$ACADVER|1=AC1018|9=$DWGCODEPAGE|3=ANSI_1252|"
        "9=$INSBASE|10=0|20=0|30=0|9=$EXTMIN|");
    out.Place(10, placement.Low());
    out.Pairs("30=0|9=$EXTMAX|");
    out.Place(10, placement.High());
    out.Pairs("30=0|9=$LIMMIN|");
    out.Place(10, placement.Low());
    out.Pairs("9=$LIMMAX|");
    out.Place(10, placement.High());
    out.Pairs(
        "9=$LTSCALE|40=1|9=$CLAYER|8=0|9=$LUNITS|70=2|9=$LUPREC|70=4|9=$MEASUREMENT|70=1|"
        "9=$INSUNITS|70=4|9=$LWDISPLAY|290=1|9=$PDMODE|70=0|9=$HANDSEED|");
    out.Handle(5, kFirstFreeHandle + tables.Layers().size() + tables.LineTypes().size() +
                      tables.Entities());
    out.Pairs("0=ENDSEC|0=SECTION|2=CLASSES|0=ENDSEC|");
}

// The view that shows the whole drawing.
void WriteView(const Placement& placement, GroupCodes& out) {
    constexpr double kAspect = 1.5;
    constexpr double kAir = 1.05;
    const Position low = placement.Low();
    const Position high = placement.High();
    const auto width = static_cast<double>(high.x - low.x);
    const auto height = static_cast<double>(high.y - low.y);
    const double shown = std::max({height, width / kAspect, kPartsPerMillimetre});
    out.Pairs(
        "0=TABLE|2=VPORT|5=1|330=0|100=AcDbSymbolTable|70=1|0=VPORT|5=10|330=1|"
        "100=AcDbSymbolTableRecord|100=AcDbViewportTableRecord|2=*Active|70=0|"
        "10=0|20=0|11=1|21=1|");
    out.Place(12, {low.x + (high.x - low.x) / 2, low.y + (high.y - low.y) / 2});
    out.Pairs("13=0|23=0|14=10|24=10|15=10|25=10|16=0|26=0|36=1|17=0|27=0|37=0|");
    out.Real(40, shown * kAir / kPartsPerMillimetre);
    out.Real(41, kAspect);
    out.Pairs("42=50|43=0|44=0|50=0|51=0|71=0|72=1000|73=1|74=3|75=0|76=0|77=0|78=0|0=ENDTAB|");
}

void BeginLineType(std::uint64_t handle, std::string_view name, GroupCodes& out) {
    out.Pairs("0=LTYPE|");
    out.Handle(5, handle);
    out.Pairs("330=2|100=AcDbSymbolTableRecord|100=AcDbLinetypeTableRecord|");
    out.Text(2, name);
    out.Pairs("70=0|3=|72=65|");
}

void WriteLineTypes(const PageTables& tables, std::uint64_t handle, GroupCodes& out) {
    constexpr std::string_view kSolid[] = {"ByBlock", "ByLayer", "Continuous"};
    constexpr std::uint64_t kFirstSolid = 0x11;
    out.Pairs("0=TABLE|2=LTYPE|5=2|330=0|100=AcDbSymbolTable|");
    out.Number(70, static_cast<std::int64_t>(std::size(kSolid) + tables.LineTypes().size()));
    for (std::size_t i = 0; i < std::size(kSolid); ++i) {
        BeginLineType(kFirstSolid + i, kSolid[i], out);
        out.Pairs("73=0|40=0|");
    }
    for (const auto& [elements, number] : tables.LineTypes()) {
        BeginLineType(handle++, LineTypeName(number), out);
        std::int64_t length = 0;
        for (const std::int64_t element : elements) length += std::abs(element);
        out.Number(73, static_cast<std::int64_t>(elements.size()));
        out.Length(40, length);
        for (const std::int64_t element : elements) {
            out.Length(49, element);
            out.Number(74, 0);
        }
    }
    out.Pairs("0=ENDTAB|");
}

void BeginLayer(std::uint64_t handle, std::string_view name, bool frozen, GroupCodes& out) {
    out.Pairs("0=LAYER|");
    out.Handle(5, handle);
    out.Pairs("330=3|100=AcDbSymbolTableRecord|100=AcDbLayerTableRecord|");
    out.Text(2, name);
    out.Number(70, frozen ? 1 : 0);
}

void WriteLayers(const PageTables& tables, std::uint64_t handle, GroupCodes& out) {
    constexpr std::uint64_t kLayerZero = 0x14;
    constexpr std::uint64_t kTexts = 0x15;
    const std::size_t count = tables.Layers().size() + (tables.HasTexts() ? 2 : 1);
    out.Pairs("0=TABLE|2=LAYER|5=3|330=0|100=AcDbSymbolTable|");
    out.Number(70, static_cast<std::int64_t>(count));
    BeginLayer(kLayerZero, "0", false, out);
    out.Pairs("62=7|6=Continuous|370=-3|390=D|");
    for (const auto& [number, layer] : tables.Layers()) {
        const IndexedColour colour = IndexOf(layer.look.colour);
        BeginLayer(handle++, LayerName(number), false, out);
        // A negative colour is a layer that is off.
        out.Number(62, layer.visible ? colour.index : -colour.index);
        if (!colour.exact) out.Number(420, TrueColour(layer.look.colour));
        out.Pairs("6=Continuous|");
        out.Number(370, layer.look.weight);
        out.Pairs("390=D|");
    }
    if (tables.HasTexts()) {
        BeginLayer(kTexts, kTextLayer, true, out);
        out.Pairs("62=8|6=Continuous|290=0|370=-3|390=D|");
    }
    out.Pairs("0=ENDTAB|");
}

void WriteOtherTables(GroupCodes& out) {
    out.Pairs(
        "0=TABLE|2=STYLE|5=4|330=0|100=AcDbSymbolTable|70=1|0=STYLE|5=16|330=4|"
        "100=AcDbSymbolTableRecord|100=AcDbTextStyleTableRecord|2=Standard|70=0|40=0|41=1|50=0|"
        "71=0|42=2.5|3=txt|4=|0=ENDTAB|"
        "0=TABLE|2=VIEW|5=5|330=0|100=AcDbSymbolTable|70=0|0=ENDTAB|"
        "0=TABLE|2=UCS|5=6|330=0|100=AcDbSymbolTable|70=0|0=ENDTAB|"
        "0=TABLE|2=APPID|5=7|330=0|100=AcDbSymbolTable|70=1|0=APPID|5=17|330=7|"
        "100=AcDbSymbolTableRecord|100=AcDbRegAppTableRecord|2=ACAD|70=0|0=ENDTAB|"
        "0=TABLE|2=DIMSTYLE|5=8|330=0|100=AcDbSymbolTable|70=1|100=AcDbDimStyleTable|71=0|"
        "0=DIMSTYLE|105=18|330=8|100=AcDbSymbolTableRecord|100=AcDbDimStyleTableRecord|"
        "2=Standard|70=0|0=ENDTAB|"
        "0=TABLE|2=BLOCK_RECORD|5=9|330=0|100=AcDbSymbolTable|70=2|"
        "0=BLOCK_RECORD|5=19|330=9|100=AcDbSymbolTableRecord|100=AcDbBlockTableRecord|"
        "2=*Model_Space|340=0|"
        "0=BLOCK_RECORD|5=1A|330=9|100=AcDbSymbolTableRecord|100=AcDbBlockTableRecord|"
        "2=*Paper_Space|340=0|0=ENDTAB|");
}

void WriteBlocks(GroupCodes& out) {
    out.Pairs(
        "0=SECTION|2=BLOCKS|0=BLOCK|5=1B|330=19|100=AcDbEntity|8=0|100=AcDbBlockBegin|"
        "2=*Model_Space|70=0|10=0|20=0|30=0|3=*Model_Space|1=|"
        "0=ENDBLK|5=1C|330=19|100=AcDbEntity|8=0|100=AcDbBlockEnd|"
        "0=BLOCK|5=1D|330=1A|100=AcDbEntity|67=1|8=0|100=AcDbBlockBegin|"
        "2=*Paper_Space|70=0|10=0|20=0|30=0|3=*Paper_Space|1=|"
        "0=ENDBLK|5=1E|330=1A|100=AcDbEntity|67=1|8=0|100=AcDbBlockEnd|0=ENDSEC|");
}

}  // namespace

std::uint64_t WriteFront(const PageTables& tables, const Placement& placement, GroupCodes& out) {
    const std::uint64_t lineTypes = kFirstFreeHandle + tables.Layers().size();
    WriteHeader(tables, placement, out);
    out.Pairs("0=SECTION|2=TABLES|");
    WriteView(placement, out);
    WriteLineTypes(tables, lineTypes, out);
    WriteLayers(tables, kFirstFreeHandle, out);
    WriteOtherTables(out);
    out.Pairs("0=ENDSEC|");
    WriteBlocks(out);
    out.Pairs("0=SECTION|2=ENTITIES|");
    return lineTypes + tables.LineTypes().size();
}

void WriteBack(GroupCodes& out) {
    out.Pairs(
        "0=ENDSEC|0=SECTION|2=OBJECTS|0=DICTIONARY|5=A|330=0|100=AcDbDictionary|281=1|"
        "3=ACAD_GROUP|350=B|3=ACAD_PLOTSTYLENAME|350=C|"
        "0=DICTIONARY|5=B|330=A|100=AcDbDictionary|281=1|"
        "0=ACDBDICTIONARYWDFLT|5=C|330=A|100=AcDbDictionary|281=1|3=Normal|350=D|"
        "100=AcDbDictionaryWithDefault|340=D|0=ACDBPLACEHOLDER|5=D|330=C|0=ENDSEC|0=EOF|");
}

}  // namespace qm::dxf
