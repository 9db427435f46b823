// Helpers of the export tests: a replay script in, the written bytes out.
//
//   Exported("object 1203\nAppendLine 0 0 1 1\nend\n").bytes     the whole document
//   VectorText("AppendPen 2")                                     what one vector sink writes
//
// Every replay checks that no object is left alive.
#pragma once

#include <gtest/gtest.h>
#include <objbase.h>

#include <cstddef>
#include <limits>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "export/plot_text.h"
#include "platform/write_only_stream.h"
#include "replay/replay.h"

namespace qm {

// A stream that keeps every write apart. It takes writes up to `room` bytes and answers `full` to
// the one that does not fit, of which it takes nothing, and to all that follow.
class RecordingStream final : public WriteOnlyStream {
  public:
    explicit RecordingStream(std::size_t room = std::numeric_limits<std::size_t>::max(),
                             HRESULT full = STG_E_MEDIUMFULL)
        : room_(room), full_(full) {}

    const std::vector<std::string>& Writes() const { return writes_; }
    std::string Bytes() const {
        std::string bytes;
        for (const std::string& write : writes_) bytes += write;
        return bytes;
    }

    HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG size, ULONG* done) noexcept override {
        // The export does not ask for the count.
        EXPECT_EQ(done, nullptr);
        if (size > room_) room_ = 0;
        if (room_ == 0) return full_;
        room_ -= size;
        writes_.emplace_back(static_cast<const char*>(data), size);
        return S_OK;
    }

  private:
    std::size_t room_;
    HRESULT full_;
    std::vector<std::string> writes_;
};

struct ExportResult {
    std::string bytes;
    std::vector<std::string> writes;
    std::string messages;
    int status = 0;
};

inline ExportResult Exported(std::string_view script, ReplayFormat format = ReplayFormat::kHpgl,
                             std::size_t room = std::numeric_limits<std::size_t>::max(),
                             HRESULT full = STG_E_MEDIUMFULL) {
    const LONG before = LiveObjectCount();
    ExportResult result;
    {
        const auto stream = MakeObject<RecordingStream>(room, full);
        std::ostringstream messages;
        result.status = ReplayScript(script, "test", format, stream.Get(), messages);
        result.bytes = stream->Bytes();
        result.writes = stream->Writes();
        result.messages = messages.str();
    }
    EXPECT_EQ(LiveObjectCount(), before);
    return result;
}

// `bytes` between the header and the trailer of its document.
inline std::string Between(const std::string& bytes, std::string_view header,
                           std::string_view trailer) {
    const std::size_t around = header.size() + trailer.size();
    EXPECT_GE(bytes.size(), around);
    EXPECT_EQ(bytes.substr(0, header.size()), header);
    EXPECT_EQ(bytes.substr(bytes.size() - trailer.size()), trailer);
    return bytes.substr(header.size(), bytes.size() - around);
}

// What the calls on one vector sink write, y upward; `setup` stands in front of the sink.
inline std::string VectorText(std::string_view calls,
                              std::string_view setup = "attribute DirectionY true",
                              int type = 1203) {
    std::string script(setup);
    script += "\nobject " + std::to_string(type) + "\n";
    script += calls;
    script += "\nend\n";
    const ExportResult result = Exported(script);
    EXPECT_EQ(result.messages, "");
    return Between(result.bytes, plot_text::kVectorHeader, plot_text::kVectorTrailer);
}

// A row of a table of scripts: what it shows, the script or calls, what comes out.
struct ScriptRow {
    const char* name;
    std::string script;
    std::string expected;
};
inline void PrintTo(const ScriptRow& row, std::ostream* out) { *out << row.name; }

}  // namespace qm
