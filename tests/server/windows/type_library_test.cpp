// What a host's author learns from the DLL's type library alone: the interfaces a host implements,
// with their methods in the order of the function table.
#include <gtest/gtest.h>
#include <windows.h>

#include <oleauto.h>

#include <map>
#include <string>

#include "platform/com_ptr.h"
#include "platform/text.h"
#include "platform/variant.h"

namespace {

// "i4 bstr* ...": VT_ names of the types that the interfaces use, a star for each pointer.
std::string NameOfType(const TYPEDESC& type) {
    static const std::map<VARTYPE, const char*> kNames = {{VT_I2, "i2"},
                                                          {VT_I4, "i4"},
                                                          {VT_UI4, "u4"},
                                                          {VT_UI1, "u1"},
                                                          {VT_R4, "r4"},
                                                          {VT_R8, "r8"},
                                                          {VT_BSTR, "bstr"},
                                                          {VT_BOOL, "bool"},
                                                          {VT_VARIANT, "variant"},
                                                          {VT_UNKNOWN, "unknown"},
                                                          {VT_USERDEFINED, "interface"}};
    if (type.vt == VT_PTR) return NameOfType(*type.lptdesc) + '*';
    const auto found = kNames.find(type.vt);
    return found == kNames.end() ? "vt" + std::to_string(type.vt) : found->second;
}

std::string NameOf(ITypeInfo& type, MEMBERID member) {
    qm::Bstr name;
    type.GetDocumentation(member, name.Put(), nullptr, nullptr, nullptr);
    return qm::WideToUtf8(name.Get());
}

// "AddLayer(i4 bstr u4 i4) ...": the methods that stand in the order of the function table.
std::string MethodsOf(ITypeInfo& type) {
    TYPEATTR* attributes = nullptr;
    type.GetTypeAttr(&attributes);
    std::string methods;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(type.GetFuncDesc(i, &function))) continue;
        if (function->oVft == static_cast<SHORT>((3 + i) * sizeof(void*))) {
            methods += methods.empty() ? "" : " ";
            methods += NameOf(type, function->memid) + '(';
            for (SHORT p = 0; p < function->cParams; ++p) {
                methods += (p > 0 ? " " : "") + NameOfType(function->lprgelemdescParam[p].tdesc);
            }
            methods += ')';
        }
        type.ReleaseFuncDesc(function);
    }
    type.ReleaseTypeAttr(attributes);
    return methods;
}

struct Row {
    const char* name;
    const char* methods;  // how the list begins, or all of it
};

const Row kRows[] = {
    {"IQmDataObject", "Storage(unknown*) StorageName(bstr*)"},
    {"IQmBuildVectorData",
     "AppendDrawColor1(i4 i4 i4) AppendFillColor1(i4 i4 i4) AppendLayer(i4) AppendPen(i4) "
     "AppendLineStyle(i4) AppendLineWidth(i4) AppendLine(i4 i4 i4 i4) "
     "AppendRectangle(i4 i4 i4 i4 bool) AppendCircle(i4 i4 i4 bool) "
     "AppendArc3(i4 i4 i4 i4 r4 r4) AppendPolygon(i4 i4* bool)"},
    {"IQmLayers", "AddLayer(i4 bstr u4 i4) GetCount(i4*) GetLayer(i4 i4* bstr* u4* i4*)"},
    {"IQmPenTable",
     "AddPen(i4 u4 r8 u4) GetPen(i4 i4* i4* r8*) GetPenCount(i4*) GetPenNumber(i4 i4*)"},
    {"IQmFilter", "OpenDocument(interface* interface* i4) GetNode(variant i4 unknown*)"},
    {"_IQmFilterEvents", "Progress(i4 bool*)"},
};

TEST(TypeLibrary, HoldsWhatAHostImplements) {
    qm::ComPtr<ITypeLib> library;
    ASSERT_EQ(LoadTypeLibEx(L"QmFilter_HPGL.dll", REGKIND_NONE, library.Put()), S_OK);
    std::map<std::string, std::string> found;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        qm::ComPtr<ITypeInfo> type;
        ASSERT_EQ(library->GetTypeInfo(i, type.Put()), S_OK);
        found[NameOf(*type.Get(), MEMBERID_NIL)] = MethodsOf(*type.Get());
    }
    for (const Row& row : kRows) {
        EXPECT_EQ(found[row.name].substr(0, std::string(row.methods).size()), row.methods)
            << row.name;
    }
}

}  // namespace
