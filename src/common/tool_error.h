// ToolError: why the tool gives up on a file. The writers and the subcommands throw it, qmplot's
// main alone catches it.
#pragma once

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace qm {

// Exit statuses of qmplot.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitNotAPlot = 1;  // no plot file, or a status code other than S_OK
inline constexpr int kExitUsage = 2;     // wrong usage, or a file that cannot be read or written

class ToolError : public std::runtime_error {
  public:
    // `message` names the file, the cause and, where one exists, the way out; no closing dot, no
    // line end.
    explicit ToolError(const std::string& message, int status = kExitUsage)
        : std::runtime_error(message), status_(status) {}

    int Status() const noexcept { return status_; }

  private:
    int status_;
};

// A page that cannot be written: the message names no file, because writers of pages know none; who
// does puts it in front.
class PageError : public ToolError {
  public:
    using ToolError::ToolError;
};

// "FILE: cannot be DONE: No space left on device", with the cause of errno.
inline ToolError SystemError(const std::string& file, const char* done, int cause = errno) {
    return ToolError(file + ": cannot be " + done + ": " + std::strerror(cause));
}

}  // namespace qm
