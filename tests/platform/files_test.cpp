// Files by handle and temporary files.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/file_handle.h"

namespace {

bool Exists(const std::wstring& path) {
    return static_cast<bool>(qm::FileHandle::OpenForReading(path.c_str()));
}

TEST(Files, ReadSizeAndPosition) {
    const auto file = qm::TemporaryFile::Create(L"qmhelper");
    DWORD done = 0;
    {
        const qm::FileHandle out(CreateFileW(file.Path().c_str(), GENERIC_WRITE, 0, nullptr,
                                             CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        EXPECT_TRUE(WriteFile(out.Get(), "0123456789", 10, &done, nullptr));
        EXPECT_EQ(done, 10U);
    }
    const auto in = qm::FileHandle::OpenForReading(file.Path().c_str());
    ASSERT_TRUE(in);
    DWORD high = 1;
    EXPECT_EQ(GetFileSize(in.Get(), &high), 10U);
    EXPECT_EQ(high, 0U);
    EXPECT_EQ(SetFilePointer(in.Get(), -4, nullptr, FILE_END), 6U);
    char text[16] = {};
    EXPECT_TRUE(ReadFile(in.Get(), text, sizeof(text), &done, nullptr));
    EXPECT_EQ(std::string(text, done), "6789");
    EXPECT_EQ(SetFilePointer(in.Get(), -11, nullptr, FILE_CURRENT), INVALID_SET_FILE_POINTER);
    LONG upper = 1;
    EXPECT_EQ(SetFilePointer(in.Get(), 5, &upper, FILE_BEGIN), 5U);
    EXPECT_EQ(upper, 1);
}

TEST(Files, TemporaryFileHasItsNameAndIsDeleted) {
    std::wstring path;
    {
        const auto file = qm::TemporaryFile::Create(L"qmhelper");
        path = file.Path();
        EXPECT_NE(path, qm::TemporaryFile::Create(L"qmhelper").Path());
        EXPECT_TRUE(Exists(path));
        EXPECT_FALSE(Exists(file.Folder())) << "a folder does not open";
        EXPECT_EQ(file.Name().substr(0, 3), L"qmh");
        EXPECT_LE(file.Name().size(), 11U) << "four digits";
        EXPECT_EQ(file.Name().substr(file.Name().size() - 4), L".tmp");
        EXPECT_EQ(path.substr(0, file.Folder().size()), file.Folder());
    }
    EXPECT_FALSE(Exists(path));
    wchar_t folder[MAX_PATH];
    const DWORD length = GetTempPathW(MAX_PATH, folder);
    EXPECT_TRUE(folder[length - 1] == L'/' || folder[length - 1] == L'\\');
    EXPECT_EQ(GetTempPathW(length, folder), length + 1);  // the terminator does not fit
    EXPECT_EQ(GetTempFileNameW(std::wstring(300, L'x').c_str(), L"qmh", 0, folder), 0U);
}

}  // namespace
