// What the DLL writes to the registry and takes away again.
#include <qmfilter.h>
#include <windows.h>

#include <string>

#include "platform/text.h"
#include "tests/server/windows/registry_text.h"
#include "tests/server/windows/server_module.h"

namespace {

constexpr wchar_t kFilters[] = L"Software\\Quenmar\\QmFilters";

// The value of `key` below `root` and `name`, or "(none)".
std::string Value(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
    wchar_t text[1024] = {};
    DWORD size = sizeof(text);
    return RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size) ==
                   ERROR_SUCCESS
               ? qm::WideToUtf8(text)
               : "(none)";
}

// Every place a registration may write to. Whole branches where they are ours or small, names
// elsewhere.
std::string Everything() {
    return qm::RegistryKeys(HKEY_CLASSES_ROOT, L"") +
           qm::RegistryKeys(HKEY_CLASSES_ROOT, L"CLSID") +
           qm::RegistryText(HKEY_CLASSES_ROOT, L"TypeLib") +
           qm::RegistryKeys(HKEY_CLASSES_ROOT, L"Interface") +
           qm::RegistryKeys(HKEY_LOCAL_MACHINE, L"Software") +
           qm::RegistryText(HKEY_LOCAL_MACHINE, L"Software\\Quenmar");
}

std::string ModulePath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(GetModuleHandleW(L"QmFilter_HPGL.dll"), path, MAX_PATH);
    return qm::WideToUtf8(path);
}

// The numbers of a four-part version, from the file itself.
std::string FileVersion() {
    BYTE resource[4096] = {};
    VS_FIXEDFILEINFO* info = nullptr;
    UINT size = 0;
    GetFileVersionInfoW(L"QmFilter_HPGL.dll", 0, sizeof(resource), resource);
    if (VerQueryValueW(resource, L"\\", reinterpret_cast<void**>(&info), &size) == FALSE) return "";
    char text[64];
    std::snprintf(text, sizeof(text), "%u.%u.%u.%u", HIWORD(info->dwFileVersionMS),
                  LOWORD(info->dwFileVersionMS), HIWORD(info->dwFileVersionLS),
                  LOWORD(info->dwFileVersionLS));
    return text;
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

struct Registered {
    std::string component;
    std::string clsid;
    std::string filterValues;
};
void PrintTo(const Registered& row, std::ostream* out) { *out << row.component; }

const Registered kRegistered[] = {{"QmFilterHPGL", "{22192533-BB8C-4B47-9835-69382A294F65}",
                                   R"([AppID] = Q6Filter
[Extension] = *.PLT,*.HP,*.HP2,*.HPG,*.NID
[Format] = Hewlett Packard Graphics Language
[Group] = Vector
[ProgID] = QmFilter_HPGL.QmFilterHPGL
[Version] = VERSION
)"},
                                  {"QmFilterSaveHPGL", "{56B9FEAD-AF2F-4EDC-A2DB-7E00C0EF6186}",
                                   R"([BlockSupport] = dword 16
[CLSID] = {56B9FEAD-AF2F-4EDC-A2DB-7E00C0EF6186}
[Group] = Vector
[ProgID] = QmFilter_HPGL.QmFilterSaveHPGL
[RasterSupport] = dword 257
[SaveExtension] = PLT
[SaveFormat] = Hewlett Packard Graphics Language
[StorageType] = dword 1
[Version] = VERSION
)"},
                                  {"QmFilterSaveHPRTL", "{2903B211-8207-451E-A9DC-7012D9B2BEBA}",
                                   R"([BlockSupport] = dword 2
[CLSID] = {2903B211-8207-451E-A9DC-7012D9B2BEBA}
[Group] = Vector
[ProgID] = QmFilter_HPGL.QmFilterSaveHPRTL
[RasterSupport] = dword 265
[SaveExtension] = PLT
[SaveFormat] = HP-RTL
[StorageType] = dword 1
[Version] = VERSION
)"}};

class Registration : public qm::RegisteredServer, public testing::WithParamInterface<Registered> {};
INSTANTIATE_TEST_SUITE_P(Components, Registration, testing::ValuesIn(kRegistered),
                         [](const auto& row) { return row.param.component; });

TEST_P(Registration, ClassKeys) {
    const auto& [component, clsid, values] = GetParam();
    const std::string progId = "QmFilter_HPGL." + component;
    EXPECT_EQ(qm::RegistryText(HKEY_CLASSES_ROOT, L"CLSID\\" + qm::BytesToWide(clsid)),
              "= " + component + " Class\n" + "InprocServer32 = " + ModulePath() + "\n" +
                  "InprocServer32 [ThreadingModel] = Apartment\n" + "ProgID = " + progId + ".1\n" +
                  "TypeLib = {37E4B812-1165-4E59-B383-AAB6B22707A5}\n" +
                  "VersionIndependentProgID = " + progId + "\n");
    EXPECT_EQ(qm::RegistryText(HKEY_CLASSES_ROOT, qm::BytesToWide(progId)),
              "= " + component + " Class\nCLSID = " + clsid + "\nCurVer = " + progId + ".1\n");
    EXPECT_EQ(qm::RegistryText(HKEY_CLASSES_ROOT, qm::BytesToWide(progId + ".1")),
              "= " + component + " Class\nCLSID = " + clsid + "\n");
}

TEST_P(Registration, FilterKeys) {
    const auto& [component, clsid, values] = GetParam();
    const std::wstring key = std::wstring(kFilters) + L"\\" + qm::BytesToWide(component);
    EXPECT_FALSE(FileVersion().empty());
    EXPECT_EQ(qm::RegistryText(HKEY_LOCAL_MACHINE, key),
              Replaced(values, "VERSION", FileVersion()));
}

class RegistrationOfModule : public qm::RegisteredServer {};

TEST_F(RegistrationOfModule, SharedKeys) {
    EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, kFilters), "Quenmar COM Filters");
    EXPECT_EQ(qm::RegistryKeys(HKEY_LOCAL_MACHINE, kFilters),
              "QmFilterHPGL\nQmFilterSaveHPGL\nQmFilterSaveHPRTL\n");
    const std::wstring library = L"TypeLib\\{37E4B812-1165-4E59-B383-AAB6B22707A5}\\1.0";
    EXPECT_EQ(Value(HKEY_CLASSES_ROOT, library), "QmFilter HPGL 1.0 Type Library");
    // The system may put a prefix before the path.
    EXPECT_NE(Value(HKEY_CLASSES_ROOT, library + L"\\0\\win64").find(ModulePath()),
              std::string::npos);
}

class Unregistration : public qm::ServerModule {};

TEST_F(Unregistration, TakesAwayExactlyWhatWasWritten) {
    const std::string before = Everything();
    ASSERT_EQ(Call("DllRegisterServer"), S_OK);
    const std::string registered = Everything();
    EXPECT_NE(registered, before);
    EXPECT_EQ(Call("DllRegisterServer"), S_OK);  // as an update does
    EXPECT_EQ(Everything(), registered);
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(Everything(), before);
}

TEST_F(Unregistration, LeavesTheFiltersOfOthers) {
    const std::wstring other = std::wstring(kFilters) + L"\\QmFilterOther";
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, other.c_str(), L"Group", REG_SZ, L"Raster", 14);
    const std::string before = qm::RegistryText(HKEY_LOCAL_MACHINE, kFilters);
    EXPECT_EQ(Call("DllRegisterServer"), S_OK);
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(qm::RegistryText(HKEY_LOCAL_MACHINE, kFilters), "= Quenmar COM Filters\n" + before);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Quenmar");
}

// The exit code of the system's own program for registration, which wants a full path.
int RegSvr32(const std::wstring& options) {
    return _wsystem(
        (L"regsvr32.exe " + options + L" \"" + qm::Utf8ToWide(ModulePath()) + L"\"").c_str());
}

TEST_F(Unregistration, RegSvr32) {
    const std::string before = Everything();
    EXPECT_EQ(RegSvr32(L"/s"), 0);
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(L"QmFilter_HPGL.QmFilterSaveHPRTL", &clsid), S_OK);
    EXPECT_EQ(clsid, CLSID_QmFilterSaveHPRTL);
    EXPECT_EQ(RegSvr32(L"/u /s"), 0);
    EXPECT_EQ(Everything(), before);
}

}  // namespace
