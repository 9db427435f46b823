// The archive library through its five exports, as the import filter loads it: sound, damaged and
// lying archives.
#include "archive/archive_api.h"

#include "archive/zip_archive.h"
#include "platform/library.h"
#include "platform/text.h"
#include "tests/archive/zip_maker.h"

namespace qm::archive {
namespace {

using namespace testing_zip;

std::string Numbers(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += "PD" + std::to_string(i * 37 % 1000) + ",5;";
    return text;
}

class ArchiveTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library_) << "QmZipx is not beside the tests"; }

    Handle Open(const std::filesystem::path& path) const {
        return open_(Utf8ToWide(path.string()).c_str());
    }
    std::wstring Directory() const { return Utf8ToWide(folder_.Path().string()); }
    // What entry `index` of the archive unpacks to; "failed" when it does not.
    std::string Extracted(Handle archive, std::int32_t index) const {
        WriteAll(folder_ / "out", "what stood here before, longer than the test's entries");
        const bool done = extract_(archive, index, Directory().c_str(), L"out") != 0;
        EXPECT_EQ(done, std::filesystem::exists(folder_ / "out"));
        return done ? ReadAll(folder_ / "out") : "failed";
    }
    std::string ExtractedFrom(std::string_view zip) const {
        WriteAll(folder_ / "patched.zip", zip);
        const Handle archive = Open(folder_ / "patched.zip");
        std::string text = archive == kNoArchive ? "failed" : Extracted(archive, 0);
        close_(archive);
        return text;
    }

    Folder folder_;
    Library library_{kLibraryName};
    OpenArchiveFunction* open_ = library_.Function<OpenArchiveFunction>("OpenArchive");
    GetNumberOfFilesFunction* count_ =
        library_.Function<GetNumberOfFilesFunction>("GetNumberOfFiles");
    GetFileInfoFunction* info_ = library_.Function<GetFileInfoFunction>("GetFileInfo");
    ExtractToFileFunction* extract_ = library_.Function<ExtractToFileFunction>("ExtractToFile");
    CloseArchiveFunction* close_ = library_.Function<CloseArchiveFunction>("CloseArchive");
};

TEST_F(ArchiveTest, NamesSizesAndContents) {
    const std::string big = Numbers(30000);
    const std::string longName(400, 'n');
    MakeZip(folder_ / "a.zip", {{"plan.prn", big},
                                {"dir/sub/plan.prn", "IN;", false},
                                {"../up.plt", ""},
                                {"Pl\xC3\xA4ne.plt", "x"},
                                {longName, "y"},
                                {"bzip2", big, true, false, true}});
    const Handle archive = Open(folder_ / "a.zip");
    ASSERT_EQ(count_(archive), 6);
    const std::pair<std::wstring, std::string> rows[] = {
        {L"plan.prn", big},
        {L"dir/sub/plan.prn", "IN;"},
        {L"../up.plt", ""},
        {L"Pl\u00E4ne.plt", "x"},
        {std::wstring(kNameCharacters - 1, L'n'), "y"},
        {L"bzip2", big}};
    std::int32_t index = 0;
    for (const auto& [wanted, content] : rows) {
        wchar_t name[kNameCharacters];
        std::int64_t size = 0, packed = 0;
        EXPECT_EQ(info_(archive, index, name, &size, &packed), 1);
        EXPECT_EQ(name, wanted);
        EXPECT_EQ(size, static_cast<std::int64_t>(content.size()));
        EXPECT_EQ(Extracted(archive, index++), content);
    }
    EXPECT_EQ(folder_.Files(), 2U) << "an entry's name was used as a path";
    EXPECT_EQ(close_(archive), 1);
}

TEST_F(ArchiveTest, WrongArgumentsAreRefused) {
    MakeZip(folder_ / "a.zip", {{"plan.prn", "IN;"}});
    WriteAll(folder_ / "text", "no archive");
    EXPECT_EQ(Open(folder_ / "text"), kNoArchive);
    EXPECT_EQ(Open(folder_ / "absent"), kNoArchive);
    EXPECT_EQ(Open(folder_.Path()), kNoArchive);
    EXPECT_EQ(open_(L""), kNoArchive);
    EXPECT_EQ(open_(nullptr), kNoArchive);

    const Handle archive = Open(folder_ / "a.zip");
    const Handle other = Open(folder_ / "a.zip");
    wchar_t name[kNameCharacters] = L"old";
    std::int64_t size = 7, packed = 7;
    for (const std::int32_t index : {-1, 1, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(info_(archive, index, name, &size, &packed), 0);
        EXPECT_EQ(Extracted(archive, index), "failed");
    }
    EXPECT_EQ(std::wstring(name) + std::to_wstring(size), L"-1");
    EXPECT_EQ(extract_(archive, 0, Directory().c_str(), L"../out"), 0);
    EXPECT_EQ(extract_(archive, 0, (Directory() + L"/absent").c_str(), L"out"), 0);
    EXPECT_EQ(extract_(archive, 0, nullptr, L"out"), 0);
    EXPECT_EQ(close_(archive), 1);
    EXPECT_EQ(close_(archive), 0);
    EXPECT_EQ(count_(archive), 0);
    EXPECT_EQ(Extracted(other, 0), "IN;");
    EXPECT_EQ(close_(other), 1);
}

TEST_F(ArchiveTest, AThousandAreOpenAtOnce) {
    MakeZip(folder_ / "a.zip", {{"plan.prn", "IN;"}});
    std::vector<Handle> open;
    for (Handle next = Open(folder_ / "a.zip"); next != kNoArchive; next = Open(folder_ / "a.zip"))
        open.push_back(next);
    EXPECT_EQ(open.size(), 1000U);
    for (const Handle archive : open) EXPECT_EQ(close_(archive), 1);
}

TEST_F(ArchiveTest, ExtractionStopsAtTheLimit) {
    MakeZip(folder_ / "a.zip", {{"plan.prn", std::string(1000000, ';')}});
    const ZipArchive sound((folder_ / "a.zip").wstring());
    EXPECT_TRUE(sound.Extract(0, (folder_ / "out").wstring(), 1000000));
    EXPECT_FALSE(sound.Extract(0, (folder_ / "out").wstring(), 999999));
    // The claim is below the limit, what comes is not.
    std::string zip = ReadAll(folder_ / "a.zip");
    PatchField(zip, "PK\1\2", 24, 10);
    PatchField(zip, "PK\3\4", 22, 10);
    WriteAll(folder_ / "b.zip", zip);
    const ZipArchive lying((folder_ / "b.zip").wstring());
    EXPECT_FALSE(lying.Extract(0, (folder_ / "out").wstring(), 70000));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out"));
}

TEST_F(ArchiveTest, SmallArchivesHoldNoLargeEntries) {
    MakeZip(folder_ / "a.zip", {{"plan.prn", std::string(5000000, ';')}});
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(folder_ / "a.zip"));
    EXPECT_EQ(ZipArchive((folder_ / "a.zip").wstring()).MaxBytes(), (4 << 20) + 128 * bytes);
    EXPECT_EQ(Extracted(Open(folder_ / "a.zip"), 0) == "failed", 5000000 > (4 << 20) + 128 * bytes);
}

// Whatever is wrong with an archive, an entry comes out as it went in or not at all.
TEST_F(ArchiveTest, DamageNeverChangesAnEntry) {
    const std::string content = Numbers(30);
    MakeZip(folder_ / "a.zip", {{"plan.prn", content}});
    const std::string sound = ReadAll(folder_ / "a.zip");
    int refused = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        std::string damaged = sound;
        damaged[i] = static_cast<char>(damaged[i] ^ 0xFF);
        for (const std::string& zip : {damaged, sound.substr(0, i)}) {
            const std::string out = ExtractedFrom(zip);
            if (out == "failed") ++refused;
            EXPECT_TRUE(out == content || out == "failed") << "byte " << i;
        }
    }
    EXPECT_GT(refused, static_cast<int>(sound.size()));  // every cut, and the data's bytes
}

}  // namespace
}  // namespace qm::archive
