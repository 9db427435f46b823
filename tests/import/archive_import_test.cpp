// Plots in zip archives, through the filter and the archive library; temporary files must go.
#include <cstdlib>

#include "platform/text.h"
#include "tests/archive/zip_maker.h"
#include "tests/import/import_fixture.h"

namespace qm {
namespace {

using testing_zip::Item;
using testing_zip::MakeZip;

// The folder that GetTempPathW answers; an empty path means the system's own.
void SetTemporaryFolder(const std::filesystem::path& path) {
#ifdef _WIN32
    static const std::wstring original = _wgetenv(L"TMP");
    SetEnvironmentVariableW(L"TMP", path.empty() ? original.c_str() : path.c_str());
#else
    path.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", path.c_str(), 1);
#endif
}

class ArchiveImportTest : public ImportTest {
  protected:
    void SetUp() override {
        ImportTest::SetUp();
        // Extracted files land in a folder of the test's own, where leftovers show.
        SetTemporaryFolder(temporary_.Path());
    }
    void TearDown() override {
        EXPECT_EQ(temporary_.Files(), 0U) << "a temporary file was left";
        SetTemporaryFolder({});
        ImportTest::TearDown();
    }
    HRESULT OpenZip(const std::vector<Item>& items) {
        MakeZip(folder_ / "a.zip", items);
        return OpenFile();
    }
    HRESULT OpenFile() {
        const auto path = folder_ / "a.zip";
        return Open(testing_zip::ReadAll(path), Utf8ToWide(path.string()));
    }

    testing_zip::Folder folder_;
    testing_zip::Folder temporary_;
};

const std::string kPlot = PlotOf("PD1,1;PG;PD2,2;");

TEST_F(ArchiveImportTest, BuildsThePlotOfAnArchive) {
    ASSERT_EQ(OpenZip({{"readme.txt", "IN;"}, {"PLAN.prn", kPlot}, {"plan.prn", "IN;"}}), S_OK);
    EXPECT_EQ(lines_[0], "document PutAttribute \"Format\" \"Nemetschek Allplan\" 2");
    EXPECT_EQ(lines_[1], "document PutAttribute \"DocType\" 3 2");
    EXPECT_EQ(GetNode(), S_OK);
    EXPECT_TRUE(Wrote("contents PutAttribute \"TotalNodes\" 2 2"));
    EXPECT_EQ(GetNode(Variant::Text(L"Page 2")), S_OK);
    EXPECT_EQ(node_, "container2");
}

TEST_F(ArchiveImportTest, OnlyAWholeNameCounts) {
    for (const char* name : {"plan.pr", "plan.prn2", "a/plan.prn", "xplan.prn", "pl\xC3\xA1n.prn",
                             "plan prn", "\xC5\xBFlan.prn"}) {
        EXPECT_EQ(OpenZip({{name, kPlot}}), E_FAIL) << name;
    }
    EXPECT_EQ(OpenZip({{"plan.prn/", ""}}), E_FAIL);
    MakeZip(folder_ / "a.zip", {{"plan.prn", kPlot}});
    EXPECT_EQ(Open(testing_zip::ReadAll(folder_ / "a.zip")), E_FAIL) << "no file behind it";
    EXPECT_EQ(Open("no plot", Utf8ToWide((folder_ / "a.zip").string())), E_FAIL);
    EXPECT_TRUE(lines_.empty());
}

TEST_F(ArchiveImportTest, AnEntryThatIsNoPlotMakesNoPage) {
    ASSERT_EQ(OpenZip({{"plan.prn", "1234567890"}}), S_OK);
    EXPECT_EQ(GetNode(), S_OK);
    EXPECT_EQ(lines_.back(), "contents PutAttribute \"TotalNodes\" 0 2");
}

TEST_F(ArchiveImportTest, EntriesThatCannotBeUnpacked) {
    ASSERT_EQ(OpenZip({{"plan.prn", kPlot, true, true}}), S_OK) << "encrypted";
    EXPECT_EQ(GetNode(), E_FAIL);
    MakeZip(folder_ / "a.zip", {{"plan.prn", kPlot}});
    std::string zip = testing_zip::ReadAll(folder_ / "a.zip");
    testing_zip::PatchField(zip, "PK\1\2", 16, 0x12345678);  // checksum
    testing_zip::WriteAll(folder_ / "a.zip", zip);
    ASSERT_EQ(OpenFile(), S_OK);
    EXPECT_EQ(GetNode(), E_FAIL);
    ASSERT_EQ(OpenZip({{"plan.prn", kPlot}}), S_OK);
    std::filesystem::remove(folder_ / "a.zip");
    EXPECT_EQ(GetNode(), E_FAIL) << "the archive is gone";
}

TEST_F(ArchiveImportTest, FailuresOfTheLoadLeaveNoFile) {
    ASSERT_EQ(OpenZip({{"plan.prn", kPlot}}), S_OK);
    refused_ = {{"block1 IsEmpty false", E_UNEXPECTED}};
    EXPECT_EQ(GetNode(), E_FAIL);
    EXPECT_EQ(temporary_.Files(), 0U);
    SetTemporaryFolder(temporary_ / "absent");
    EXPECT_EQ(GetNode(), E_FAIL) << "no folder for temporary files";
}

TEST_F(ArchiveImportTest, AbortLeavesNoFile) {
    MakeZip(folder_ / "a.zip", {{"plan.prn", kPlot}});
    const auto path = folder_ / "a.zip";
    TraceOptions options;
    options.abortAt = 30;
    ComPtr<IQmDataObject> source;
    ASSERT_EQ(OpenFileObject(Utf8ToWide(path.string()), source.Put()), S_OK);
    EXPECT_EQ(TraceImport(*source, options, [](std::string_view) { return S_OK; }), E_ABORT);
}

}  // namespace
}  // namespace qm
