// See console.h.
#include "cli/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

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

int ErrorColumns() {
    constexpr int kUsual = 80;  // of a terminal that does not tell
    if (isatty(STDERR_FILENO) == 0) return 0;
    struct winsize size {};
    const bool told = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return told ? size.ws_col : kUsual;
}

namespace {

// The signal that came, 0: none. A signal handler can reach nothing but a static.
std::atomic<int> interruption{0};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void NoteInterruption(int signal) { interruption = signal; }

}  // namespace

void WatchForInterruption() {
    struct sigaction action {};
    action.sa_handler = NoteInterruption;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
}

bool Interrupted() noexcept { return interruption != 0; }

void EndByInterruption() {
    std::signal(interruption, SIG_DFL);
    std::raise(interruption);
    std::_Exit(kExitNotAPlot);  // the signal is blocked
}

}  // namespace qm::cli
