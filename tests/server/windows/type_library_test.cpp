// The type library that the DLL carries.
#include <gtest/gtest.h>
#include <ole2.h>
#include <qmfilter.h>

#include <map>
#include <string>

#include "platform/bstr.h"
#include "platform/com_ptr.h"
#include "platform/text.h"
#include "tests/server/windows/server_module.h"

namespace {

using qm::ComPtr;

class TypeLibrary : public qm::RegisteredServer {
  protected:
    void SetUp() override {
        RegisteredServer::SetUp();
        ASSERT_EQ(LoadRegTypeLib(LIBID_QmFilterHPGLLib, 1, 0, LOCALE_NEUTRAL, library_.Put()),
                  S_OK);
    }
    void TearDown() override {
        library_.Reset();
        RegisteredServer::TearDown();
    }

    ComPtr<ITypeInfo> Type(REFGUID guid) const {
        ComPtr<ITypeInfo> type;
        library_->GetTypeInfoOfGuid(guid, type.Put());
        return type;
    }
    static std::string Name(ITypeInfo& type, MEMBERID member = MEMBERID_NIL) {
        qm::Bstr name;
        type.GetDocumentation(member, name.Put(), nullptr, nullptr, nullptr);
        return qm::WideToUtf8(name.View());
    }
    // "default IQmFilter, default source _IQmFilterEvents, "
    static std::string Implemented(ITypeInfo& coclass, UINT count) {
        std::string text;
        for (UINT i = 0; i < count; ++i) {
            HREFTYPE reference = 0;
            int flags = 0;
            ComPtr<ITypeInfo> type;
            coclass.GetRefTypeOfImplType(i, &reference);
            coclass.GetImplTypeFlags(i, &flags);
            coclass.GetRefTypeInfo(reference, type.Put());
            text += (flags & IMPLTYPEFLAG_FDEFAULT) != 0 ? "default " : "";
            text += (flags & IMPLTYPEFLAG_FSOURCE) != 0 ? "source " : "";
            text += Name(*type) + ", ";
        }
        return text;
    }

    ComPtr<ITypeLib> library_;
};

TEST_F(TypeLibrary, Coclasses) {
    const struct {
        CLSID clsid;
        UINT count;
        const char* expected;
    } kRows[] = {
        {CLSID_QmFilterHPGL, 2, "default IQmFilter, default source _IQmFilterEvents, "},
        {CLSID_QmFilterSaveHPGL, 2, "default IQmFilterSave, default source _IQmFilterSaveEvents, "},
        {CLSID_QmFilterSaveHPRTL, 2,
         "default IQmFilterSave, default source _IQmFilterSaveEvents, "},
        {CLSID_QmSaveVectorDataD, 1, "default IQmSaveVectorDataD, "},
    };
    for (const auto& row : kRows) {
        const auto coclass = Type(row.clsid);
        ASSERT_TRUE(coclass) << row.expected;
        EXPECT_EQ(Implemented(*coclass, row.count), row.expected);
    }
}

TEST_F(TypeLibrary, InterfacesWithTheirMethods) {
    const auto filter = Type(__uuidof(IQmFilter));
    ASSERT_TRUE(filter);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(filter->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_INTERFACE);
    ASSERT_EQ(attributes->cFuncs, 2);
    filter->ReleaseTypeAttr(attributes);
    const char* const kNames[] = {"OpenDocument", "GetNode"};
    for (UINT i = 0; i < 2; ++i) {
        FUNCDESC* function = nullptr;
        ASSERT_EQ(filter->GetFuncDesc(i, &function), S_OK);
        EXPECT_EQ(Name(*filter, function->memid), kNames[i]);
        EXPECT_EQ(function->oVft, static_cast<SHORT>((3 + i) * sizeof(void*)));
        filter->ReleaseFuncDesc(function);
    }
}

TEST_F(TypeLibrary, Enumerations) {
    const std::map<std::string, std::map<std::string, LONG>> kExpected = {
        {"QM_OBJECT_TYPE", {{"QM_VAPI", 1000}, {"QM_VECTOR_BLOCKD", 1206}, {"QM_PEN_TABLE", 3006}}},
        {"QM_RASTER_TYPE", {{"QM_RASTER_BW", 0}, {"QM_RASTER_WB", 9}}},
        {"QM_POLY_FILL_MODE", {{"QM_ALTERNATE", 0}, {"QM_WINDING", 1}}}};
    std::size_t found = 0;
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> type;
        library_->GetTypeInfo(i, type.Put());
        const auto expected = kExpected.find(Name(*type));
        if (expected == kExpected.end()) continue;
        for (UINT member = 0;; ++member) {
            VARDESC* variable = nullptr;
            if (FAILED(type->GetVarDesc(member, &variable))) break;
            const auto value = expected->second.find(Name(*type, variable->memid));
            if (value != expected->second.end()) {
                EXPECT_EQ(variable->lpvarValue->lVal, value->second) << value->first;
                ++found;
            }
            type->ReleaseVarDesc(variable);
        }
    }
    EXPECT_EQ(found, 7u);
}

}  // namespace
