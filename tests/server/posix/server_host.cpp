#include "tests/server/server_host.h"

#include <array>
#include <filesystem>

#include "make_filter_linux.h"
#include "platform/prog_id.h"

namespace qm {
namespace {

// The module stands beside the test program.
std::string ModulePath() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "libQmFilter_HPGL.so";
}

}  // namespace

struct ServerHost::System {
    FilterLibrary library{ModulePath().c_str()};
    std::array<DWORD, kHostProgIds.size()> cookies{};
};

ServerHost::ServerHost() : module_(ModulePath().c_str()), system_(std::make_unique<System>()) {
    for (std::size_t i = 0; i < kHostProgIds.size(); ++i) {
        CLSID clsid;
        ComPtr<IClassFactory> factory;
        ClassIdFromProgId(kHostProgIds[i], &clsid);
        CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                         factory.PutVoid());
        system_->library.AddHostClass(kHostProgIds[i], clsid, factory.Get(), &system_->cookies[i]);
    }
}

ServerHost::~ServerHost() {
    for (const DWORD cookie : system_->cookies) system_->library.RemoveHostClass(cookie);
}

ComPtr<IQmFilter> ServerHost::MakeFilter() const {
    return system_->library.Make<IQmFilter>(CLSID_QmFilterHPGL);
}

ComPtr<IQmFilterSave> ServerHost::MakeSave() const {
    return system_->library.Make<IQmFilterSave>(CLSID_QmFilterSaveHPGL);
}

}  // namespace qm
