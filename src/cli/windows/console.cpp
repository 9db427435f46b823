// See console.h.
#include "cli/console.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace qm::cli {

namespace {

// What is printed is UTF-8; the console's own code page comes back when the program ends.
class ConsoleInUtf8 {
  public:
    ConsoleInUtf8() { SetConsoleOutputCP(CP_UTF8); }
    ~ConsoleInUtf8() { SetConsoleOutputCP(before_); }
    ConsoleInUtf8(const ConsoleInUtf8&) = delete;
    ConsoleInUtf8& operator=(const ConsoleInUtf8&) = delete;

  private:
    const UINT before_ = GetConsoleOutputCP();
};

}  // namespace

void PrepareStandardStreams() {
    static const ConsoleInUtf8 utf8;
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    // The progress bar clears its line with an escape sequence.
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) != FALSE) {
        SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

void StandardOutput::Flush() {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    std::string_view rest = buffer_;
    while (!rest.empty() && !Failed()) {
        const auto count = static_cast<unsigned>(std::min(rest.size(), kMostAtOnce));
        const int done = _write(_fileno(stdout), rest.data(), count);
        if (done >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(done));
        } else {
            const DWORD error = GetLastError();
            const bool closed = error == ERROR_NO_DATA || error == ERROR_BROKEN_PIPE;
            cause_ = closed ? EPIPE : errno;
        }
    }
    buffer_.clear();
}

void StandardOutput::Finish() {
    Flush();
    if (Failed() && cause_ != EPIPE) throw SystemError("standard output", "written", cause_);
}

int ErrorColumns() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    if (GetConsoleScreenBufferInfo(console, &info) == FALSE) return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

namespace {

// A signal handler can reach nothing but a static.
std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void NoteInterruption(int) { interrupted = true; }

}  // namespace

// The C library takes the handler out when it calls it, so the second Ctrl-C ends the program. A
// parent asks its children to end by Ctrl-Break (child_process.cpp).
void WatchForInterruption() {
    std::signal(SIGINT, NoteInterruption);
    std::signal(SIGBREAK, NoteInterruption);
}

bool Interrupted() noexcept { return interrupted; }

void EndByInterruption() {
    constexpr UINT kControlCExit = 0xC000013A;  // what a program has that Ctrl-C ended
    std::exit(static_cast<int>(kControlCExit));
}

}  // namespace qm::cli
