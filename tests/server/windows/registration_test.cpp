// What the DLL writes to the registry and takes away again.
#include <gtest/gtest.h>
#include <qmfilter.h>
#include <windows.h>

#include <cstring>
#include <set>
#include <string>

#include "platform/com_ptr.h"
#include "platform/library.h"
#include "platform/text.h"

namespace {

constexpr DWORD kLongestName = 256;
constexpr wchar_t kQuenmar[] = L"Software\\Quenmar";

// The names that `enumerate` (RegEnumKeyExW or RegEnumValueW) gives, sorted.
template <typename Enumerate>
std::set<std::wstring> Names(HKEY key, Enumerate enumerate) {
    std::set<std::wstring> names;
    wchar_t name[kLongestName];
    DWORD length = kLongestName;
    for (DWORD i = 0;
         enumerate(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++i, length = kLongestName) {
        names.emplace(name, length);
    }
    return names;
}

std::string ValueText(HKEY key, const std::wstring& name) {
    wchar_t data[1024] = {};
    DWORD size = sizeof(data);
    DWORD type = 0;
    RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
    if (type == REG_SZ) return qm::WideToUtf8(data);
    DWORD number = 0;
    std::memcpy(&number, data, sizeof(number));
    return "dword " + std::to_string(number);
}

// A branch as lines "KEY [NAME] = VALUE"; without `deep` the names of its keys alone.
std::string Text(HKEY root, const std::wstring& path, bool deep = true,
                 const std::string& at = "") {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
    std::string text;
    for (const std::wstring& name : deep ? Names(key, RegEnumValueW) : std::set<std::wstring>()) {
        text += at + " [" + qm::WideToUtf8(name) + "] = " + ValueText(key, name) + "\n";
    }
    for (const std::wstring& name : Names(key, RegEnumKeyExW)) {
        const std::string below = at + "\\" + qm::WideToUtf8(name);
        text += deep ? Text(key, name, true, below) : below + "\n";
    }
    RegCloseKey(key);
    return text;
}

// Every place a registration may write to. Whole branches where they are ours or small, names
// elsewhere.
std::string Everything() {
    return Text(HKEY_CLASSES_ROOT, L"", false) + Text(HKEY_CLASSES_ROOT, L"CLSID", false) +
           Text(HKEY_CLASSES_ROOT, L"TypeLib") + Text(HKEY_CLASSES_ROOT, L"Interface", false) +
           Text(HKEY_LOCAL_MACHINE, L"Software", false) + Text(HKEY_LOCAL_MACHINE, kQuenmar);
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

class Registration : public testing::Test {
  protected:
    Registration() { CoInitialize(nullptr); }
    ~Registration() override { CoUninitialize(); }

    HRESULT Call(const char* entryPoint) const {
        const auto function = module_.Function<HRESULT STDAPICALLTYPE()>(entryPoint);
        return function == nullptr ? E_NOTIMPL : function();
    }
    static std::string ModulePath() {
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(GetModuleHandleW(L"QmFilter_HPGL.dll"), path, MAX_PATH);
        return qm::WideToUtf8(path);
    }

  private:
    const qm::Library module_{"QmFilter_HPGL.dll"};
};

TEST_F(Registration, Filters) {
    ASSERT_EQ(Call("DllRegisterServer"), S_OK);
    const std::string text = Text(HKEY_LOCAL_MACHINE, kQuenmar);
    const std::size_t version = text.find("[Version] = ") + 12;
    const std::string number = text.substr(version, text.find('\n', version) - version);
    EXPECT_EQ(Replaced(text, "[Version] = " + number, "[Version]"),
              R"(\QmFilters [] = Quenmar COM Filters
\QmFilters\QmFilterHPGL [AppID] = Q6Filter
\QmFilters\QmFilterHPGL [Extension] = *.PLT,*.HP,*.HP2,*.HPG,*.NID
\QmFilters\QmFilterHPGL [Format] = Hewlett Packard Graphics Language
\QmFilters\QmFilterHPGL [Group] = Vector
\QmFilters\QmFilterHPGL [ProgID] = QmFilter_HPGL.QmFilterHPGL
\QmFilters\QmFilterHPGL [Version]
\QmFilters\QmFilterSaveHPGL [BlockSupport] = dword 16
\QmFilters\QmFilterSaveHPGL [CLSID] = {56B9FEAD-AF2F-4EDC-A2DB-7E00C0EF6186}
\QmFilters\QmFilterSaveHPGL [Group] = Vector
\QmFilters\QmFilterSaveHPGL [ProgID] = QmFilter_HPGL.QmFilterSaveHPGL
\QmFilters\QmFilterSaveHPGL [RasterSupport] = dword 257
\QmFilters\QmFilterSaveHPGL [SaveExtension] = PLT
\QmFilters\QmFilterSaveHPGL [SaveFormat] = Hewlett Packard Graphics Language
\QmFilters\QmFilterSaveHPGL [StorageType] = dword 1
\QmFilters\QmFilterSaveHPGL [Version]
\QmFilters\QmFilterSaveHPRTL [BlockSupport] = dword 2
\QmFilters\QmFilterSaveHPRTL [CLSID] = {2903B211-8207-451E-A9DC-7012D9B2BEBA}
\QmFilters\QmFilterSaveHPRTL [Group] = Vector
\QmFilters\QmFilterSaveHPRTL [ProgID] = QmFilter_HPGL.QmFilterSaveHPRTL
\QmFilters\QmFilterSaveHPRTL [RasterSupport] = dword 265
\QmFilters\QmFilterSaveHPRTL [SaveExtension] = PLT
\QmFilters\QmFilterSaveHPRTL [SaveFormat] = HP-RTL
\QmFilters\QmFilterSaveHPRTL [StorageType] = dword 1
\QmFilters\QmFilterSaveHPRTL [Version]
)");
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
}

TEST_F(Registration, ClassesAndTypeLibrary) {
    ASSERT_EQ(Call("DllRegisterServer"), S_OK);
    const std::pair<std::string, std::string> rows[] = {
        {"QmFilterHPGL", "{22192533-BB8C-4B47-9835-69382A294F65}"},
        {"QmFilterSaveHPGL", "{56B9FEAD-AF2F-4EDC-A2DB-7E00C0EF6186}"},
        {"QmFilterSaveHPRTL", "{2903B211-8207-451E-A9DC-7012D9B2BEBA}"}};
    for (const auto& [component, clsid] : rows) {
        const std::string progId = "QmFilter_HPGL." + component;
        const std::string name = " [] = " + component + " Class\n";
        EXPECT_EQ(Text(HKEY_CLASSES_ROOT, L"CLSID\\" + qm::BytesToWide(clsid)),
                  name + "\\InprocServer32 [] = " + ModulePath() +
                      "\n\\InprocServer32 [ThreadingModel] = Apartment\n\\ProgID [] = " + progId +
                      ".1\n\\TypeLib [] = {37E4B812-1165-4E59-B383-AAB6B22707A5}\n"
                      "\\VersionIndependentProgID [] = " +
                      progId + "\n");
        EXPECT_EQ(Text(HKEY_CLASSES_ROOT, qm::BytesToWide(progId)),
                  name + "\\CLSID [] = " + clsid + "\n\\CurVer [] = " + progId + ".1\n");
        EXPECT_EQ(Text(HKEY_CLASSES_ROOT, qm::BytesToWide(progId + ".1")),
                  name + "\\CLSID [] = " + clsid + "\n");
    }
    qm::ComPtr<ITypeLib> library;
    EXPECT_EQ(LoadRegTypeLib(LIBID_QmFilterHPGLLib, 1, 0, LOCALE_NEUTRAL, library.Put()), S_OK);
    library.Reset();
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
}

// Also behind a second registration, as an update does it, and beside the filters of others.
TEST_F(Registration, TakesAwayExactlyWhatWasWritten) {
    const std::string before = Everything();
    ASSERT_EQ(Call("DllRegisterServer"), S_OK);
    const std::string registered = Everything();
    EXPECT_NE(registered, before);
    EXPECT_EQ(Call("DllRegisterServer"), S_OK);
    EXPECT_EQ(Everything(), registered);
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(Everything(), before);
    const std::wstring other = std::wstring(kQuenmar) + L"\\QmFilters\\QmFilterOther";
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, other.c_str(), L"Group", REG_SZ, L"Raster", 14);
    EXPECT_EQ(Call("DllRegisterServer"), S_OK);
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(Text(HKEY_LOCAL_MACHINE, kQuenmar),
              "\\QmFilters [] = Quenmar COM Filters\n"
              "\\QmFilters\\QmFilterOther [Group] = Raster\n");
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kQuenmar);
}

}  // namespace
