// type_library_header DLL HEADER: writes the interfaces, enumerations and classes of the DLL's type
// library as a header for g++ and Visual C++, for a host that has the DLL and nothing else.
//
// What the header cannot say (a dispatch interface, a structure) ends it with status 1 and a
// message; a type library has no "const", and enumerations are unscoped. It stands alone: no other
// file of this repository is needed to build it. Test: tests/server/windows/from_dll_test.sh.
#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;

void Check(bool condition, const std::string& message) {
    if (!condition) throw std::runtime_error(message);
}

// Takes over `text`, an identifier: each character is one byte.
std::string Narrow(BSTR text) {
    std::string narrow;
    for (UINT i = 0; i < SysStringLen(text); ++i) {
        Check(text[i] < 128, "a name that is no identifier of C++");
        narrow += static_cast<char>(text[i]);
    }
    SysFreeString(text);
    return narrow;
}

std::string NameOf(ITypeInfo& type, MEMBERID member = MEMBERID_NIL) {
    BSTR name = nullptr;
    Check(SUCCEEDED(type.GetDocumentation(member, &name, nullptr, nullptr, nullptr)), "no name");
    return Narrow(name);
}

ComPtr<ITypeInfo> Referred(ITypeInfo& type, HREFTYPE reference) {
    ComPtr<ITypeInfo> referred;
    Check(SUCCEEDED(type.GetRefTypeInfo(reference, &referred)),
          NameOf(type) + " refers to a type that is missing");
    return referred;
}

// What a type lends, given back when the last copy goes.
std::shared_ptr<TYPEATTR> AttributesOf(ITypeInfo& type) {
    TYPEATTR* attributes = nullptr;
    Check(SUCCEEDED(type.GetTypeAttr(&attributes)), "no attributes");
    return {attributes, [&](TYPEATTR* a) { type.ReleaseTypeAttr(a); }};
}

// clang-format off
const std::map<VARTYPE, const char*> kTypeNames = {
    {VT_I1, "CHAR"}, {VT_UI1, "BYTE"}, {VT_I2, "SHORT"}, {VT_UI2, "USHORT"}, {VT_I4, "LONG"}, {VT_UI4, "ULONG"},
    {VT_INT, "INT"}, {VT_UINT, "UINT"}, {VT_I8, "LONGLONG"}, {VT_UI8, "ULONGLONG"}, {VT_R4, "FLOAT"},
    {VT_R8, "DOUBLE"}, {VT_BSTR, "BSTR"}, {VT_BOOL, "VARIANT_BOOL"}, {VT_VARIANT, "VARIANT"},
    {VT_HRESULT, "HRESULT"}, {VT_VOID, "void"}, {VT_UNKNOWN, "IUnknown*"}, {VT_DISPATCH, "IDispatch*"}};
// clang-format on

std::string TypeText(ITypeInfo& owner, const TYPEDESC& type) {
    if (type.vt == VT_PTR) return TypeText(owner, *type.lptdesc) + '*';
    if (type.vt == VT_USERDEFINED) return NameOf(*Referred(owner, type.hreftype).Get());
    const auto found = kTypeNames.find(type.vt);
    Check(found != kTypeNames.end(), NameOf(owner) + ": type " + std::to_string(type.vt));
    return found->second;
}

// "503cc2d1-79e9-4140-97f1-72593cbe9c16".
std::string GuidText(const GUID& guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return Narrow(SysAllocStringLen(text + 1, 36));
}

// "virtual HRESULT STDMETHODCALLTYPE AddChild(VARIANT name, ...) = 0;". `offset` is where the
// method must stand in the function table: a hole would call another method.
std::string MethodText(ITypeInfo& type, UINT index, int offset) {
    FUNCDESC* function = nullptr;
    Check(SUCCEEDED(type.GetFuncDesc(index, &function)), NameOf(type) + ": no method");
    const std::shared_ptr<FUNCDESC> owner(function, [&](FUNCDESC* f) { type.ReleaseFuncDesc(f); });
    const bool get = function->invkind == INVOKE_PROPERTYGET;
    const std::string name = (get ? "get_" : "") + NameOf(type, function->memid);
    Check(get || function->invkind == INVOKE_FUNC, NameOf(type) + "::" + name + " sets a property");
    Check(function->oVft == offset, NameOf(type) + "::" + name + " stands elsewhere in the table");
    std::vector<BSTR> names(1 + static_cast<std::size_t>(function->cParams));
    UINT count = 0;  // names that are not known are left out
    type.GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &count);
    std::string text = "    virtual " + TypeText(type, function->elemdescFunc.tdesc) +
                       " STDMETHODCALLTYPE " + name + '(';
    for (std::size_t i = 1; i < names.size(); ++i) {
        text += (i > 1 ? ", " : "") + TypeText(type, function->lprgelemdescParam[i - 1].tdesc);
        if (i < count) text += ' ' + Narrow(names[i]);
    }
    SysFreeString(names[0]);
    return text + ") = 0;\n";
}

class Header {
  public:
    explicit Header(ITypeLib& library) {
        for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
            ComPtr<ITypeInfo> type;
            Check(SUCCEEDED(library.GetTypeInfo(i, &type)), "no type");
            types_[NameOf(*type.Get())] = type;
        }
        for (const auto& [name, type] : types_) Add(name, *type.Get());
    }
    std::string Text() const {
        return "// Written from a type library.\n#pragma once\n\n"
               "#include <windows.h>\n\n#include <oaidl.h>\n\n" +
               forward_ + '\n' + enums_ + interfaces_ + "#ifdef __CRT_UUID_DECL\n" + guids_ +
               "#endif\n";
    }

  private:
    void Add(const std::string& name, ITypeInfo& type) {
        const auto attributes = AttributesOf(type);
        switch (attributes->typekind) {
            case TKIND_ENUM:
                return AddEnum(name, type, attributes->cVars);
            case TKIND_INTERFACE:
                return AddInterface(name, type);
            case TKIND_COCLASS:
                forward_ +=
                    "class DECLSPEC_UUID(\"" + GuidText(attributes->guid) + "\") " + name + ";\n";
                return AddGuid(name, attributes->guid);
            default:
                Check(false, name + " is neither interface nor enumeration nor class");
        }
    }
    void AddEnum(const std::string& name, ITypeInfo& type, UINT count) {
        enums_ += "enum " + name + " {\n";
        for (UINT i = 0; i < count; ++i) {
            VARDESC* value = nullptr;
            Check(SUCCEEDED(type.GetVarDesc(i, &value)), name + ": no value");
            enums_ += "    " + NameOf(type, value->memid) + " = " +
                      std::to_string(value->lpvarValue->lVal) + ",\n";
            type.ReleaseVarDesc(value);
        }
        enums_ += "};\n\n";
    }
    // The base stands first.
    void AddInterface(const std::string& name, ITypeInfo& type) {
        if (!written_.insert(name).second) return;
        const auto attributes = AttributesOf(type);
        HREFTYPE reference = 0;
        Check(SUCCEEDED(type.GetRefTypeOfImplType(0, &reference)), name + " has no base");
        const auto base = Referred(type, reference);
        const std::string baseName = NameOf(*base.Get());
        if (types_.count(baseName) > 0) AddInterface(baseName, *base.Get());
        const int first = AttributesOf(*base.Get())->cbSizeVft;

        forward_ += "struct " + name + ";\n";
        interfaces_ += "MIDL_INTERFACE(\"" + GuidText(attributes->guid) + "\")\n" + name +
                       " : public " + baseName + " {\n";
        for (UINT i = 0; i < attributes->cFuncs; ++i) {
            interfaces_ += MethodText(type, i, first + static_cast<int>(i * sizeof(void*)));
        }
        interfaces_ += "};\n";
        AddGuid(name, attributes->guid);
    }
    // g++ knows __uuidof only for what is told this way.
    void AddGuid(const std::string& name, const GUID& guid) {
        char text[120];
        std::snprintf(text, sizeof text, "0x%08lx, 0x%04x, 0x%04x", guid.Data1, guid.Data2,
                      guid.Data3);
        guids_ += "__CRT_UUID_DECL(" + name + ", " + text;
        for (const unsigned char byte : guid.Data4) guids_ += ", " + std::to_string(byte);
        guids_ += ")\n";
    }

    std::map<std::string, ComPtr<ITypeInfo>> types_;
    std::set<std::string> written_;
    std::string forward_, enums_, interfaces_, guids_;
};

}  // namespace

int wmain(int count, wchar_t** arguments) try {
    if (count != 3) {
        std::fputs("usage: type_library_header DLL HEADER\n", stderr);
        return 2;
    }
    ComPtr<ITypeLib> library;
    Check(SUCCEEDED(LoadTypeLibEx(arguments[1], REGKIND_NONE, &library)),
          "the file has no type library");
    const std::string text = Header(*library.Get()).Text();
    std::ofstream file(std::filesystem::path(arguments[2]), std::ios::binary);
    file << text;
    file.close();
    Check(!file.fail(), "the header cannot be written");
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
