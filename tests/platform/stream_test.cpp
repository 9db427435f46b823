// Memory and file streams: the same calls on both, and where they are known to differ.
#include <gtest/gtest.h>
#include <objbase.h>
#include <shlwapi.h>

#include <string>

#include "platform/com_object.h"
#include "platform/file_handle.h"

namespace {

using qm::ComPtr;

LARGE_INTEGER Move(LONGLONG distance) {
    LARGE_INTEGER move;
    move.QuadPart = distance;
    return move;
}

// With true on a file, else in memory. The file outlives the stream.
class Streams : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        if (GetParam()) {
            file_ = qm::TemporaryFile::Create(L"qmt");
            ASSERT_EQ(SHCreateStreamOnFileW(file_.Path().c_str(), STGM_READWRITE, stream_.Put()),
                      S_OK);
        } else {
            ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream_.Put()), S_OK);
        }
    }

    ULONGLONG Seek(LONGLONG distance, DWORD origin) {
        ULARGE_INTEGER position;
        position.QuadPart = ~0ULL;
        EXPECT_EQ(stream_->Seek(Move(distance), origin, &position), S_OK);
        return position.QuadPart;
    }
    std::string Read(ULONG bytes) {
        std::string text(bytes, '?');
        ULONG done = 99;
        EXPECT_TRUE(SUCCEEDED(stream_->Read(text.data(), bytes, &done)));
        return text.substr(0, done);
    }
    void Write(const std::string& text) {
        ULONG done = 0;
        EXPECT_EQ(stream_->Write(text.data(), static_cast<ULONG>(text.size()), &done), S_OK);
        EXPECT_EQ(done, text.size());
    }
    ULONGLONG Size() {
        STATSTG status = {};
        EXPECT_EQ(stream_->Stat(&status, STATFLAG_NONAME), S_OK);
        EXPECT_EQ(status.pwcsName, nullptr);
        return status.cbSize.QuadPart;
    }

    qm::TemporaryFile file_;
    ComPtr<IStream> stream_;
};

TEST_P(Streams, ReadSeekAndStat) {
    Write("0123456789");
    EXPECT_EQ(Size(), 10U);
    EXPECT_EQ(Read(4), "");
    EXPECT_EQ(Seek(2, STREAM_SEEK_SET), 2U);
    EXPECT_EQ(Read(3), "234");
    EXPECT_EQ(Seek(-1, STREAM_SEEK_CUR), 4U);
    EXPECT_EQ(Read(100), "456789");
    EXPECT_EQ(Seek(-3, STREAM_SEEK_END), 7U);
    EXPECT_EQ(Read(1), "7");
    EXPECT_TRUE(FAILED(stream_->Seek(Move(-11), STREAM_SEEK_END, nullptr)));
    EXPECT_EQ(Seek(0, STREAM_SEEK_CUR), 8U);
}

TEST_P(Streams, WritesOverwriteExtendAndLeaveZeros) {
    Write("abcdef");
    Seek(2, STREAM_SEEK_SET);
    Write("XY");
    Seek(8, STREAM_SEEK_SET);
    EXPECT_EQ(Size(), 6U);
    Write("!");
    Seek(0, STREAM_SEEK_SET);
    EXPECT_EQ(Read(20), std::string("abXYef\0\0!", 9));
    for (const ULONG bytes : {3U, 5U}) {
        ULARGE_INTEGER size;
        size.QuadPart = bytes;
        EXPECT_EQ(stream_->SetSize(size), S_OK);
        EXPECT_EQ(Size(), bytes);
    }
    Seek(0, STREAM_SEEK_SET);
    // What grows back behind a cut is zero in our own streams, whatever it was in the system's.
    EXPECT_EQ(Read(20).substr(0, 3), "abX");
}

TEST_P(Streams, CopiesToAnother) {
    const std::string text(40000, 'x');
    Write(text + "end");
    Seek(1, STREAM_SEEK_SET);
    ComPtr<IStream> target;
    ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, target.Put()), S_OK);
    ULARGE_INTEGER wanted;
    ULARGE_INTEGER read;
    ULARGE_INTEGER written;
    wanted.QuadPart = 1ULL << 40;
    EXPECT_EQ(stream_->CopyTo(target.Get(), wanted, &read, &written), S_OK);
    EXPECT_EQ(read.QuadPart, 40002U);
    EXPECT_EQ(written.QuadPart, 40002U);
}

INSTANTIATE_TEST_SUITE_P(Platform, Streams, testing::Bool());

TEST(MemoryStream, BlockAndClonesAreShared) {
    const HGLOBAL memory = GlobalAlloc(GHND, 3);
    ComPtr<IStream> stream;
    ASSERT_EQ(CreateStreamOnHGlobal(memory, FALSE, stream.Put()), S_OK);
    ComPtr<IStream> clone;
    ASSERT_EQ(stream->Clone(clone.Put()), S_OK);
    ASSERT_EQ(stream->Write("abc", 3, nullptr), S_OK);
    stream.Reset();
    char text[4] = {};
    ASSERT_EQ(clone->Read(text, 3, nullptr), S_OK);
    EXPECT_STREQ(text, "abc");
    clone.Reset();
    EXPECT_GE(GlobalSize(memory), 3U);  // not the stream's to free
    GlobalFree(memory);
}

TEST(FileStream, MissingFileAndCreation) {
    ComPtr<IStream> stream;
    const auto file = qm::TemporaryFile::Create(L"qmt");
    const std::wstring missing = file.Path() + L".none";
    EXPECT_TRUE(FAILED(SHCreateStreamOnFileW(missing.c_str(), STGM_READ, stream.Put())));
    EXPECT_FALSE(stream);
    const DWORD create = STGM_CREATE | STGM_WRITE;
    ASSERT_EQ(SHCreateStreamOnFileW(file.Path().c_str(), create, stream.Put()), S_OK);
    EXPECT_EQ(stream->Write("new", 3, nullptr), S_OK);
    STATSTG status = {};
    EXPECT_EQ(stream->Stat(&status, STATFLAG_DEFAULT), S_OK);
    EXPECT_EQ(status.cbSize.QuadPart, 3U);
    EXPECT_NE(status.pwcsName, nullptr);
    CoTaskMemFree(status.pwcsName);
    ASSERT_EQ(SHCreateStreamOnFileW(file.Path().c_str(), STGM_READ, stream.Put()), S_OK);
    EXPECT_TRUE(FAILED(stream->Write("x", 1, nullptr)));
}

}  // namespace
