// ServerHost: the component module and the embedded host, made known to each other as on a user's
// machine: through the registry on Windows, through the library's entry points elsewhere. The
// components are made by the code of docs/integration.md.
//
// windows/server_host.cpp, posix/server_host.cpp.
#pragma once

#include <array>
#include <memory>

#include "host/open_plot.h"
#include "platform/com_ptr.h"
#include "platform/library.h"
#include "qmfilter.h"

namespace qm {

inline constexpr std::array<const wchar_t*, 3> kHostProgIds = {
    L"Tessel.QmContainer", L"Tessel.QmLayers", L"Tessel.QmPenTable"};

class ServerHost {
  public:
    ServerHost();
    ~ServerHost();
    ServerHost(const ServerHost&) = delete;
    ServerHost& operator=(const ServerHost&) = delete;

    ComPtr<IQmFilter> MakeFilter() const;
    ComPtr<IQmFilterSave> MakeSave() const;
    // The class factory and what DllCanUnloadNow answers, straight from the module.
    ComPtr<IClassFactory> Factory(REFCLSID clsid) const;
    HRESULT CanUnload() const;

  private:
    const HostClasses classes_;
    const Library module_;
    struct System;
    std::unique_ptr<System> system_;
};

}  // namespace qm
