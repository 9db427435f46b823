// Speed of a whole load: a plot in memory through the import filter into the embedded host.
#include <benchmark/benchmark.h>

#include "bench/cad_plot.h"
#include "host/open_plot.h"
#include "import/qm_filter_hpgl.h"
#include "server/class_factory.h"

namespace {

using namespace qm;

void LoadCadPlot(benchmark::State& state) {
    static const std::string plot = MakeCadPlot(32 << 20);
    const HostClasses classes;
    const auto factory = MakeObject<ClassFactory>(&CreateQmFilterHPGL);
    DWORD cookie = 0;
    if (!factory ||
        FAILED(CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                     REGCLS_MULTIPLEUSE, &cookie))) {
        state.SkipWithError("the filter cannot be registered");
        return;
    }
    for (auto _ : state) {
        ComPtr<IQmDataObject> source;
        OpenedPlot opened;
        if (FAILED(OpenMemoryObject(plot, source.Put())) || OpenPlot(*source, {}, opened) != S_OK) {
            state.SkipWithError("the plot cannot be opened");
            break;
        }
        benchmark::DoNotOptimize(opened.pages.size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(plot.size()));
    CoRevokeClassObject(cookie);
}
BENCHMARK(LoadCadPlot)->Unit(benchmark::kMillisecond);

}  // namespace
