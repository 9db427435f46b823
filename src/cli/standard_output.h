// StandardOutput: lines for other programs, through a large buffer.
//
// A failed write makes it drop what follows, because the lines come out of component calls that
// cannot be left by an exception; callers that loop look at Failed() and stop. Finish() tells the
// outcome.
#pragma once

#include <string>
#include <string_view>

namespace qm::cli {

// Once, before anything is written: a reader that closes its end of a pipe shows as a failed write,
// and bytes stay what they are. posix/standard_output.cpp, windows/standard_output.cpp.
void PrepareStandardStreams();

class StandardOutput {
  public:
    StandardOutput() { buffer_.reserve(kBufferBytes); }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    void Write(std::string_view text) {
        if (buffer_.size() + text.size() > kBufferBytes) Flush();
        buffer_ += text;
    }
    bool Failed() const { return cause_ != 0; }
    // Writes what is left. Throws ToolError when anything was lost, except to a reader that closed
    // its pipe: it has seen what it wanted.
    void Finish();

  private:
    static constexpr std::size_t kBufferBytes = std::size_t{1} << 18;
    void Flush();

    std::string buffer_;
    int cause_ = 0;  // errno of the first failure
};

}  // namespace qm::cli
