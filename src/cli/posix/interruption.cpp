#include "cli/interruption.h"

#include <atomic>
#include <csignal>

namespace qm::cli {

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
