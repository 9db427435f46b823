// InputFile and OutputFile: the files named on the command line. posix/files.cpp,
// windows/files.cpp. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "common/tool_error.h"
#include "render/output_sink.h"

namespace qm::cli {

// What the file system knows of a file.
struct FileStatus {
    std::uint64_t device = 0;  // device and number are those of one file only
    std::uint64_t number = 0;
    bool regular = false;  // no folder, pipe or device
    bool folder = false;
    std::uint64_t size = 0;
    std::int64_t written = 0;  // nanoseconds since some time, of its last change of content
    std::int64_t changed = 0;  // of its last change of anything
};

// Of the file that `path` leads to, "-" being standard input; nothing when there is none.
std::optional<FileStatus> StatusOf(const std::string& path);

// Nobody reads any more what is written to a pipe: no failure, and nothing to be said.
class ReaderGone : public ToolError {
  public:
    ReaderGone() : ToolError("", kExitSuccess) {}
};

// A plot, open for reading. "-" and other things that cannot be read twice (pipes) are copied to a
// temporary file first, so that a gigabyte of them costs no memory.
class InputFile {
  public:
    // Throws ToolError when `path` is a folder or cannot be read.
    explicit InputFile(const std::string& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    // As people know it: the path, or "standard input".
    const std::string& Name() const { return name_; }
    // A path that opens the same bytes again while this object lives.
    std::string Path() const;
    std::uint64_t Size() const { return size_; }
    // Up to `size` bytes from the current position; 0 at the end. Throws ToolError.
    std::size_t Read(void* buffer, std::size_t size);

  private:
    void Spool();

    std::string name_;
    std::string path_;
    int file_ = -1;
    std::uint64_t size_ = 0;
    std::shared_ptr<void> copy_;  // deletes the copy where it cannot be without a name
};

// A file that stands under its name only once it is complete.
//
// What is written goes to a file beside it, without a name where the file system can do that, and
// Commit() gives it the name. Without Commit nothing is left behind; a file that stood there before
// stays as it was. Things that are no regular files (/dev/full, a pipe) and "-", standard output,
// are written directly.
class OutputFile final : public OutputSink {
  public:
    // Throws ToolError when nothing can be written there.
    explicit OutputFile(std::string path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() override;

    // Throws ToolError when the file cannot be written, and when Ctrl-C was pressed; ReaderGone.
    void Write(std::string_view bytes) override;
    // The file is complete; notices late failures.
    void Finish();
    std::uint64_t Bytes() const { return bytes_; }
    // Gives the finished file its name.
    void Commit();

  private:
    static constexpr std::size_t kBufferBytes = std::size_t{1} << 18;
    void OpenBeside();
    void Flush();
    void LinkBeside();

    std::string path_;       // as given, for messages
    std::string target_;     // the name in the end; empty: written directly
    std::string temporary_;  // the name until then; empty: none
    int file_ = -1;
    std::string buffer_;
    std::uint64_t bytes_ = 0;
};

}  // namespace qm::cli
