// The component module as a host meets it: DllGetClassObject, opening, progress, abort, saving,
// unloading. The host's side is the code of docs/integration.md.
#include "server/module/module.h"

#include <gtest/gtest.h>
#include <shlwapi.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "host/document_node.h"
#include "host/source_and_events.h"
#include "open_document.h"
#include "platform/file_handle.h"
#include "platform/text.h"
#include "save_document.h"
#include "tests/archive/zip_maker.h"
#include "tests/server/sample_component.h"
#include "tests/server/server_host.h"

namespace {

using qm::ComPtr;

constexpr char kTwoPages[] = "IN;SP1;PU0,0;PD100,0,100,100;PG;SP2;PU0,0;PD5,5;PG;";

// Two pages with enough between them that progress is told.
std::string LongPlot() {
    std::string plot = "IN;SP1;PU0,0;PD9,9;PG;";
    while (plot.size() < 300'000) plot += "PU0,0;PD100,0,100,100;";
    return plot;
}

class ModuleTest : public testing::Test {
  protected:
    void TearDown() override {
        document_.Reset();
        EXPECT_EQ(host_.CanUnload(), S_OK);
    }
    HRESULT Open(
        IQmDataObject& source, std::function<bool(int)> goOn = [](int) { return true; }) {
        document_ = qm::MakeObject<qm::DocumentNode>(SHORT{QM_DOCUMENT});
        const auto filter = host_.MakeFilter();
        if (!filter) return E_NOINTERFACE;
        return OpenDocument(*filter, source, *document_, std::move(goOn));
    }
    HRESULT OpenBytes(
        std::string_view plot, std::function<bool(int)> goOn = [](int) { return true; }) {
        ComPtr<IQmDataObject> source;
        qm::OpenMemoryObject(plot, source.Put());
        return Open(*source, std::move(goOn));
    }
    // Pages of the opened document.
    std::size_t Pages() const {
        ComPtr<IUnknown> contents;
        document_->GetChild(QM_CONTENTS, qm::Variant::Text(L"Contents").Get(), contents.Put());
        std::size_t pages = 0;
        for (ComPtr<IUnknown> page; const auto node = contents.As<IQmDocument>(); ++pages) {
            const auto name = L"Page " + std::to_wstring(pages + 1);
            if (FAILED(node->GetChild(QM_CONTAINER, qm::Variant::Text(name).Get(), page.Put()))) {
                break;
            }
        }
        return pages;
    }

    const qm::ServerHost host_;
    ComPtr<qm::DocumentNode> document_;
};

TEST_F(ModuleTest, OpensAPlotWithProgress) {
    std::vector<int> percents;
    EXPECT_EQ(OpenBytes(LongPlot(),
                        [&](int percent) {
                            percents.push_back(percent);
                            return true;
                        }),
              S_OK);
    EXPECT_EQ(Pages(), 2u);
    EXPECT_GT(percents.size(), 5u);
    EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
}

TEST_F(ModuleTest, AbortKeepsTheFinishedPages) {
    int calls = 0;
    EXPECT_EQ(OpenBytes(LongPlot(), [&](int percent) { return ++calls, percent < 50; }), E_ABORT);
    EXPECT_GE(Pages(), 1u);
    EXPECT_GT(calls, 1);
}

TEST_F(ModuleTest, OpensAnArchive) {
    const qm::testing_zip::Folder folder;
    const auto path = folder / "plot.zip";
    qm::testing_zip::MakeZip(path, {{"readme.txt", "no plot"}, {"Plan.PRN", kTwoPages}});
    ComPtr<IQmDataObject> source;
    ASSERT_EQ(qm::OpenFileObject(qm::Utf8ToWide(path.u8string()), source.Put()), S_OK);
    EXPECT_EQ(Open(*source), S_OK);
    EXPECT_EQ(Pages(), 2u);
}

TEST_F(ModuleTest, SavesThroughAStreamOfTheHost) {
    const qm::testing_zip::Folder folder;
    const auto path = folder / "saved.plt";
    const std::wstring name = qm::Utf8ToWide(path.u8string());
    {
        ComPtr<IStream> stream;
        ASSERT_EQ(SHCreateStreamOnFileW(name.c_str(), STGM_CREATE | STGM_WRITE, stream.Put()),
                  S_OK);
        const auto target = qm::MakeObject<qm::DataObject>(stream, name);
        const auto save = host_.MakeSave();
        ASSERT_TRUE(save);
        EXPECT_EQ(SaveTriangle(*save, *target), S_OK);
    }
    const std::string saved = qm::testing_zip::ReadAll(path);
    EXPECT_EQ(saved.substr(0, 21), "BPINSP1;TR0;\r\n\r\nPG;\r\n");
    EXPECT_EQ(saved.substr(saved.size() - 6), "PU;PG;");
    EXPECT_EQ(OpenBytes(saved), S_OK);
    EXPECT_EQ(Pages(), 1u);
}

TEST_F(ModuleTest, ServesThreeClasses) {
    EXPECT_FALSE(host_.Factory(CLSID_QmSaveStructure));  // made by the filters only
    EXPECT_FALSE(host_.Factory(IID_IUnknown));
}

TEST_F(ModuleTest, StaysWhileAnObjectOrALockNeedsIt) {
    auto factory = host_.Factory(CLSID_QmFilterSaveHPRTL);
    ComPtr<IUnknown> object;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, object.PutVoid()), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    factory.Reset();
    EXPECT_EQ(host_.CanUnload(), S_FALSE);
    object.Reset();
    EXPECT_EQ(host_.CanUnload(), S_FALSE);
    host_.Factory(CLSID_QmFilterHPGL)->LockServer(FALSE);
    EXPECT_EQ(host_.Factory(CLSID_QmFilterHPGL)->LockServer(FALSE), E_FAIL);
    EXPECT_EQ(host_.CanUnload(), S_OK);
}

TEST_F(ModuleTest, ComponentsAreParts) {
    for (const CLSID& clsid :
         {CLSID_QmFilterHPGL, CLSID_QmFilterSaveHPGL, CLSID_QmFilterSaveHPRTL}) {
        auto outer = qm::MakeObject<qm::Outer>();
        const auto factory = host_.Factory(clsid);
        ComPtr<IUnknown> refused;
        EXPECT_EQ(factory->CreateInstance(outer.Get(), __uuidof(IConnectionPointContainer),
                                          refused.PutVoid()),
                  CLASS_E_NOAGGREGATION);
        ASSERT_EQ(factory->CreateInstance(outer.Get(), IID_IUnknown, outer->part.PutVoid()), S_OK);
        EXPECT_NE(outer->part, outer.As<IUnknown>());
        const auto container = outer.As<IConnectionPointContainer>();
        ASSERT_TRUE(container);
        ComPtr<IEnumConnectionPoints> points;
        ComPtr<IConnectionPoint> point;
        ASSERT_EQ(container->EnumConnectionPoints(points.Put()), S_OK);
        ASSERT_EQ(points->Next(1, point.Put(), nullptr), S_OK);
        EXPECT_EQ(points->Next(1, point.Put(), nullptr), S_FALSE);
        ASSERT_EQ(points->Reset(), S_OK);
        ASSERT_EQ(points->Next(1, point.Put(), nullptr), S_OK);
        ComPtr<IConnectionPointContainer> back;
        ASSERT_EQ(point->GetConnectionPointContainer(back.Put()), S_OK);
        EXPECT_EQ(back.As<IUnknown>(), outer.As<IUnknown>());
        // Nothing of the part is counted by the part itself.
        const ULONG references = container->AddRef();
        EXPECT_EQ(outer->Release(), references - 1);
        outer.Reset();
        EXPECT_TRUE(container.As<IConnectionPointContainer>()) << "lives by a part's interface";
    }
}

}  // namespace
