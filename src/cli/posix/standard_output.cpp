#include "cli/standard_output.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "common/tool_error.h"

namespace qm::cli {

void PrepareStandardStreams() { std::signal(SIGPIPE, SIG_IGN); }

void StandardOutput::Flush() {
    std::string_view rest = buffer_;
    while (!rest.empty() && !Failed()) {
        const ssize_t done = write(STDOUT_FILENO, rest.data(), rest.size());
        if (done >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(done));
        } else if (errno != EINTR) {
            cause_ = errno;
        }
    }
    buffer_.clear();
}

void StandardOutput::Finish() {
    Flush();
    if (Failed() && cause_ != EPIPE) throw SystemError("standard output", "written", cause_);
}

}  // namespace qm::cli
