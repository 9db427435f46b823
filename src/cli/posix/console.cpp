// See console.h.
#include "cli/console.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

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

namespace {

// A signal handler can reach nothing but a static.
std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void NoteInterruption(int) { interrupted = true; }

}  // namespace

void WatchForInterruption() {
    struct sigaction action {};
    action.sa_handler = NoteInterruption;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool Interrupted() noexcept { return interrupted; }

}  // namespace qm::cli
