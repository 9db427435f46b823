#include "cli/components.h"

#include <new>

#include "common/tool_error.h"
#include "import/qm_filter_hpgl.h"
#include "server/class_factory.h"

namespace qm::cli {

Components::Components() {
    const auto factory = MakeObject<ClassFactory>(&CreateQmFilterHPGL);
    if (!factory) throw std::bad_alloc();
    const HRESULT status =
        SUCCEEDED(host_.Status())
            ? CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                    REGCLS_MULTIPLEUSE, &cookie_)
            : host_.Status();
    if (FAILED(status)) throw ToolError("the filter components cannot be registered");
}

Components::~Components() { CoRevokeClassObject(cookie_); }

ComPtr<IQmFilter> MakeFilter() {
    ComPtr<IQmFilter> filter;
    const HRESULT status = CreateQmFilterHPGL(nullptr, __uuidof(IQmFilter), filter.PutVoid());
    if (FAILED(status)) throw std::bad_alloc();
    return filter;
}

}  // namespace qm::cli
