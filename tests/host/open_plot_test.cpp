// Opening a plot as a host: pages, progress, abort, failures, and that every object is gone
// afterwards.
#include "host/open_plot.h"

#include <shlwapi.h>

#include <thread>

#include "platform/file_handle.h"
#include "platform/prog_id.h"
#include "tests/host/host_test.h"

namespace qm {
namespace {

// Two pages; the second is the third that the plot speaks of.
const std::string kPlot =
    "IN;SP1;PU;PU;PU;PU;RO90;PD100,0;PG;" + std::string(100, ';') + "SP2;CI5;";

TEST_F(HostTest, DeliversPagesAndProgress) {
    OpenedPlot plot;
    int last = 0;
    EXPECT_EQ(Open(kPlot, plot,
                   [&](int percent) {
                       EXPECT_EQ(percent, ++last);
                       return true;
                   }),
              S_OK);
    EXPECT_EQ(last, 99);
    EXPECT_EQ(plot.format, L"HPGL/2");
    ASSERT_EQ(plot.pages.size(), 2U);
    const PlotPage& page = plot.pages[1];
    EXPECT_EQ(page.Name(), L"Page 2");
    EXPECT_EQ(page.Rotation(), 90.0);
    ASSERT_EQ(page.Layers().size(), 1U);
    EXPECT_EQ(page.Layers()[0].name, L"Layer no.: 2");
}

TEST_F(HostTest, AbortKeepsFinishedPages) {
    OpenedPlot plot;
    EXPECT_EQ(Open(kPlot, plot, [](int percent) { return percent < 80; }), E_ABORT);
    EXPECT_EQ(plot.pages.size(), 1U);
}

TEST_F(HostTest, RefusesWhatIsNoPlotAndNeedsTheFilter) {
    OpenedPlot plot;
    CoInitialize(nullptr);  // as each part of a program does for itself
    CoUninitialize();
    EXPECT_EQ(Open(kPlot, plot), S_OK);
    EXPECT_EQ(Open("hello", plot), E_FAIL);
    EXPECT_TRUE(plot.pages.empty());
    EXPECT_EQ(Open("", plot), E_FAIL);
    EXPECT_TRUE(plot.pages.empty());
    CoRevokeClassObject(cookie_);
    EXPECT_EQ(Open(kPlot, plot), REGDB_E_CLASSNOTREG);
}

TEST_F(HostTest, ReadsFiles) {
    const TemporaryFile file = TemporaryFile::Create(L"qmt");
    ComPtr<IStream> stream;
    ASSERT_EQ(SHCreateStreamOnFileW(file.Path().c_str(), STGM_WRITE, stream.Put()), S_OK);
    ASSERT_EQ(stream->Write(kPlot.data(), static_cast<ULONG>(kPlot.size()), nullptr), S_OK);
    stream.Reset();
    ComPtr<IQmDataObject> source;
    ASSERT_EQ(OpenFileObject(file.Path(), source.Put()), S_OK);
    OpenedPlot plot;
    EXPECT_EQ(OpenPlot(*source, {}, plot), S_OK);
    EXPECT_TRUE(FAILED(OpenFileObject(file.Path() + L"-absent", source.Put())));
}

TEST_F(HostTest, ProgIdsOutliveOtherThreadsAndClassesBelongToTheirs) {
    CLSID clsid;
    std::thread([] {
        const HostClasses other;
        ComPtr<IClassFactory> factory;
        EXPECT_TRUE(FAILED(CoGetClassObject(CLSID_QmFilterHPGL, CLSCTX_INPROC_SERVER, nullptr,
                                            IID_IClassFactory, factory.PutVoid())));
    }).join();
    EXPECT_EQ(ClassIdFromProgId(L"tessel.QMLAYERS", &clsid), S_OK);
    classes_.reset();
    EXPECT_TRUE(FAILED(ClassIdFromProgId(L"Tessel.QmLayers", &clsid)));
}

}  // namespace
}  // namespace qm
