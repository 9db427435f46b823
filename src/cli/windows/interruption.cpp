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

// The C library takes the handler out when it calls it, so the second Ctrl-C ends the program.
void WatchForInterruption() { std::signal(SIGINT, NoteInterruption); }

bool Interrupted() noexcept { return interrupted; }

}  // namespace qm::cli
