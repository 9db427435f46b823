// An archive where "QmZipx.dll" is missing: this program stands in a folder without the library.
#include "archive/archive_api.h"
#include "platform/library.h"
#include "platform/text.h"
#include "tests/archive/zip_maker.h"
#include "tests/import/import_fixture.h"

namespace qm {
namespace {

TEST_F(ImportTest, WithoutTheLibraryAnArchiveIsNoPlotFile) {
    ASSERT_FALSE(Library(archive::kLibraryName));
    const testing_zip::Folder folder;
    testing_zip::MakeZip(folder / "a.zip", {{"plan.prn", PlotOf("PD1,1;")}});
    const auto path = folder / "a.zip";
    EXPECT_EQ(Open(testing_zip::ReadAll(path), Utf8ToWide(path.string())), E_FAIL);
    EXPECT_TRUE(lines_.empty());
}

}  // namespace
}  // namespace qm
