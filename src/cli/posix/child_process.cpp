// See child_process.h.
#include "cli/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <optional>
#include <utility>

#include "cli/console.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

using Clock = std::chrono::steady_clock;

// Closed at the end of the scope.
class Descriptor {
  public:
    explicit Descriptor(int file) : file_(file) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return file_; }
    void Close() {
        if (file_ >= 0) close(std::exchange(file_, -1));
    }

  private:
    int file_;
};

pid_t Start(const std::vector<std::string>& words, int output) {
    std::vector<std::string> copies = {"qmplot"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    arguments.reserve(copies.size() + 1);
    for (std::string& word : copies) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t child = 0;
    const int failure =
        posix_spawn(&child, "/proc/self/exe", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) throw SystemError("a child process", "started", failure);
    return child;
}

// Reads what the child writes until it ends.
class Watch {
  public:
    Watch(pid_t child, int pipe, const ChildLimits& limits)
        : child_(child), pipe_(pipe), limits_(limits) {}

    ChildResult Run() {
        while (ReadSome()) Hurry();
        int status = 0;
        while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
        }
        if (WIFSIGNALED(status)) result_.signal = WTERMSIG(status);
        return std::move(result_);
    }

  private:
    bool ReadSome() {
        constexpr int kTurnMilliseconds = 20;
        pollfd wanted{pipe_, POLLIN, 0};
        if (poll(&wanted, 1, kTurnMilliseconds) <= 0) return true;
        char bytes[4096];
        const ssize_t count = read(pipe_, bytes, sizeof bytes);
        if (count < 0) return errno == EINTR;
        result_.output.append(bytes, static_cast<std::size_t>(count));
        return count > 0;
    }
    void Hurry() {
        constexpr double kPatience = 2.0;
        const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
        if (asked_) {
            if (seconds > *asked_ + kPatience) kill(child_, SIGKILL);
            return;
        }
        if (limits_.megabytes > 0 && ResidentMegabytes() > limits_.megabytes) {
            result_.tooLarge = true;
            kill(child_, SIGKILL);
            asked_ = seconds;
            return;
        }
        result_.timedOut = limits_.seconds > 0.0 && seconds > limits_.seconds;
        if (!result_.timedOut && !Interrupted()) return;
        kill(child_, SIGTERM);
        asked_ = seconds;
    }
    // 0 where the system does not tell.
    long ResidentMegabytes() const {
        std::ifstream file("/proc/" + std::to_string(child_) + "/statm");
        long all = 0;
        long resident = 0;
        file >> all >> resident;
        return resident / ((1 << 20) / sysconf(_SC_PAGESIZE));
    }

    const pid_t child_;
    const int pipe_;
    const ChildLimits limits_;
    const Clock::time_point start_ = Clock::now();
    std::optional<double> asked_;  // to end, seconds after the start
    ChildResult result_;
};

}  // namespace

bool ChildrenAreSupported() { return true; }

ChildResult RunChild(const std::vector<std::string>& words, const ChildLimits& limits) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw SystemError("a pipe", "made");
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const pid_t child = Start(words, writing.Get());
    writing.Close();
    return Watch(child, reading.Get(), limits).Run();
}

}  // namespace qm::cli
