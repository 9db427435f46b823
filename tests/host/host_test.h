// HostTest: plots opened as a host opens them, through the import filter.
#pragma once

#include <gtest/gtest.h>
#include <objbase.h>

#include <memory>
#include <string>
#include <string_view>

#include "host/open_plot.h"
#include "import/qm_filter_hpgl.h"
#include "server/class_factory.h"

namespace qm {

class HostTest : public testing::Test {
  protected:
    void SetUp() override {
        before_ = LiveObjectCount();
        classes_ = std::make_unique<HostClasses>();
        ASSERT_EQ(classes_->Status(), S_OK);
        const auto factory = MakeObject<ClassFactory>(&CreateQmFilterHPGL);
        ASSERT_EQ(CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &cookie_),
                  S_OK);
    }
    void TearDown() override {
        CoRevokeClassObject(cookie_);
        classes_.reset();
        EXPECT_EQ(LiveObjectCount(), before_) << "objects leaked";
    }

    static HRESULT Open(std::string_view bytes, OpenedPlot& plot,
                        const ProgressCallback& progress = {}) {
        ComPtr<IQmDataObject> source;
        EXPECT_EQ(OpenMemoryObject(bytes, source.Put()), S_OK);
        return OpenPlot(*source, progress, plot);
    }
    // The pages of a plot that begins with as many commands as detection wants, pen 1 selected.
    static std::vector<PlotPage> Pages(std::string_view commands) {
        OpenedPlot plot;
        EXPECT_EQ(Open("IN;SP1;PU;PU;PU;PU;PU;PU;" + std::string(commands), plot), S_OK);
        return plot.pages;
    }

    LONG before_ = 0;
    DWORD cookie_ = 0;
    std::unique_ptr<HostClasses> classes_;
};

}  // namespace qm
