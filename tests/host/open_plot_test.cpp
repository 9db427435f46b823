// Opening a plot as a host: pages, progress, abort, failures, and that every object is gone
// afterwards.
#include "host/open_plot.h"

#include <gtest/gtest.h>
#include <objbase.h>
#include <shlwapi.h>

#include <thread>

#include "platform/file_handle.h"
#include "platform/prog_id.h"
#include "tests/host/fake_filter.h"

namespace {

using namespace qm;

class OpenPlotTest : public testing::Test {
  protected:
    void SetUp() override {
        before_ = LiveObjectCount();
        classes_ = std::make_unique<HostClasses>();
        ASSERT_EQ(classes_->Status(), S_OK);
        const auto factory = MakeObject<FakeFilterFactory>();
        ASSERT_EQ(CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &cookie_),
                  S_OK);
    }
    void TearDown() override {
        CoRevokeClassObject(cookie_);
        classes_.reset();
        EXPECT_EQ(LiveObjectCount(), before_);
    }

    static HRESULT Open(std::string_view bytes, const ProgressCallback& progress,
                        OpenedPlot& plot) {
        ComPtr<IQmDataObject> source;
        EXPECT_EQ(OpenMemoryObject(bytes, source.Put()), S_OK);
        return OpenPlot(*source, progress, plot);
    }

    LONG before_ = 0;
    DWORD cookie_ = 0;
    std::unique_ptr<HostClasses> classes_;
};

TEST_F(OpenPlotTest, DeliversPagesAndProgress) {
    OpenedPlot plot;
    std::vector<int> seen;
    EXPECT_EQ(Open(
                  "IN;",
                  [&](int percent) {
                      seen.push_back(percent);
                      return true;
                  },
                  plot),
              S_OK);
    EXPECT_EQ(seen, (std::vector<int>{0, 50}));
    EXPECT_EQ(plot.format, L"HPGL/2");
    ASSERT_EQ(plot.pages.size(), 2U);
    const PlotPage& page = plot.pages[1];
    EXPECT_EQ(page.Name(), L"Page 3");
    EXPECT_EQ(page.Rotation(), 90.0);
    EXPECT_EQ(page.UnitsPerInch(), 1016.0);
    ASSERT_EQ(page.Layers().size(), 1U);
    EXPECT_EQ(page.Layers()[0].name, L"Layer no.: 1");
    EXPECT_FALSE(page.Drawing().IsEmpty());
}

TEST_F(OpenPlotTest, AbortKeepsFinishedPages) {
    OpenedPlot plot;
    EXPECT_EQ(Open(
                  "IN;", [](int percent) { return percent < 50; }, plot),
              E_ABORT);
    EXPECT_EQ(plot.pages.size(), 1U);
}

TEST_F(OpenPlotTest, RefusesWhatIsNoPlot) {
    OpenedPlot plot;
    EXPECT_EQ(Open("hello", {}, plot), E_FAIL);
    EXPECT_EQ(Open("", {}, plot), E_FAIL);
    EXPECT_TRUE(plot.pages.empty());
}

TEST_F(OpenPlotTest, ReadsFiles) {
    const TemporaryFile file = TemporaryFile::Create(L"qmt");
    ASSERT_TRUE(static_cast<bool>(file));
    ComPtr<IStream> stream;
    ASSERT_EQ(SHCreateStreamOnFileW(file.Path().c_str(), STGM_WRITE, stream.Put()), S_OK);
    ASSERT_EQ(stream->Write("IN;", 3, nullptr), S_OK);
    stream.Reset();
    ComPtr<IQmDataObject> source;
    ASSERT_EQ(OpenFileObject(file.Path(), source.Put()), S_OK);
    Bstr name;
    EXPECT_EQ(source->get_StorageName(name.Put()), S_OK);
    EXPECT_EQ(name.View(), file.Path());
    OpenedPlot plot;
    EXPECT_EQ(OpenPlot(*source, {}, plot), S_OK);
    EXPECT_TRUE(FAILED(OpenFileObject(file.Path() + L"-absent", source.Put())));
}

TEST_F(OpenPlotTest, NeedsTheFilterAndTheHostClasses) {
    OpenedPlot plot;
    CoRevokeClassObject(cookie_);
    EXPECT_EQ(Open("IN;", {}, plot), REGDB_E_CLASSNOTREG);
}

TEST_F(OpenPlotTest, ProgIdsOutliveOtherThreads) {
    CLSID clsid;
    std::thread([] { const HostClasses other; }).join();
    EXPECT_EQ(ClassIdFromProgId(L"Tessel.QmLayers", &clsid), S_OK);
    classes_.reset();
    EXPECT_TRUE(FAILED(ClassIdFromProgId(L"Tessel.QmLayers", &clsid)));
}

}  // namespace
