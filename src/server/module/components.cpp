#include "server/module/components.h"

#include <qmfilter.h>

#include "export/save_filter.h"
#include "import/qm_filter_hpgl.h"

namespace qm {

const std::array<Component, 3>& Components() noexcept {
    static constexpr std::array<Component, 3> kComponents = {{
        {__uuidof(QmFilterHPGL), &MakeComponent<CQmFilterHPGL>, 101},
        {__uuidof(QmFilterSaveHPGL), &MakeComponent<CQmFilterSaveHPGL>, 102},
        {__uuidof(QmFilterSaveHPRTL), &MakeComponent<CQmFilterSaveHPRTL>, 103},
    }};
    return kComponents;
}

}  // namespace qm
