#include "tests/server/server_host.h"

#include <windows.h>

#include <string>

#include "make_filter_windows.h"
#include "platform/prog_id.h"

namespace qm {
namespace {

// The DLL is another module and finds the host's classes in the registry only, as an engine's.
void WriteProgId(const wchar_t* progId) {
    CLSID clsid;
    wchar_t text[40];
    ClassIdFromProgId(progId, &clsid);
    const int length = StringFromGUID2(clsid, text, 40);
    RegSetKeyValueW(HKEY_CLASSES_ROOT, (std::wstring(progId) + L"\\CLSID").c_str(), nullptr, REG_SZ,
                    text, static_cast<DWORD>(static_cast<std::size_t>(length) * sizeof(wchar_t)));
}

}  // namespace

struct ServerHost::System {};

ServerHost::ServerHost() : module_("QmFilter_HPGL.dll") {
    module_.Function<HRESULT STDAPICALLTYPE()>("DllRegisterServer")();
    for (const wchar_t* progId : kHostProgIds) WriteProgId(progId);
}

ServerHost::~ServerHost() {
    for (const wchar_t* progId : kHostProgIds) RegDeleteTreeW(HKEY_CLASSES_ROOT, progId);
    module_.Function<HRESULT STDAPICALLTYPE()>("DllUnregisterServer")();
}

ComPtr<IQmFilter> ServerHost::MakeFilter() const {
    return Make<IQmFilter>(L"QmFilter_HPGL.QmFilterHPGL");
}

ComPtr<IQmFilterSave> ServerHost::MakeSave() const {
    return Make<IQmFilterSave>(L"QmFilter_HPGL.QmFilterSaveHPGL");
}

}  // namespace qm
