// OutputFile: a file that stands under its name only once it is complete.
//
// What is written goes to a file beside it, without a name where the file system can do that, and
// Commit() gives it the name. Without Commit nothing is left behind; a file that stood there before
// stays as it was. Things that are no regular files (/dev/full, a pipe) and "-", standard output,
// are written directly. posix/output_file.cpp, windows/output_file.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "render/output_sink.h"

namespace qm::cli {

class OutputFile final : public OutputSink {
  public:
    // Throws ToolError when nothing can be written there.
    explicit OutputFile(std::string path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() override;

    // Throws ToolError when the file cannot be written, and when Ctrl-C was pressed.
    void Write(std::string_view bytes) override;
    // The file is complete; notices late failures.
    void Finish();
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
};

}  // namespace qm::cli
