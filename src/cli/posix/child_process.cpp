// See child_process.h.
#include "cli/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iostream>
#include <optional>
#include <utility>

#include "cli/console.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

using Clock = std::chrono::steady_clock;

// Where a child reads answers; its standard input may be the plot.
constexpr int kAnswers = 3;

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

struct Pipe {
    Pipe() : Pipe(MakeEnds()) {}

    Descriptor reading;
    Descriptor writing;

  private:
    explicit Pipe(std::array<int, 2> ends) : reading(ends[0]), writing(ends[1]) {}
    static std::array<int, 2> MakeEnds() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw SystemError("a pipe", "made");
        return ends;
    }
};

pid_t Start(const std::vector<std::string>& words, int output, int answers) {
    std::vector<std::string> copies = {"qmplot"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    arguments.reserve(copies.size() + 1);
    for (std::string& word : copies) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, answers, kAnswers);
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
    Watch(pid_t child, int pipe, int answers, const ChildLimits& limits, const ChildAnswer& answer)
        : child_(child), pipe_(pipe), answers_(answers), limits_(limits), answer_(answer) {}

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
        for (std::size_t end; (end = result_.output.find('\0')) != std::string::npos;) {
            Reply(answer_(result_.output.substr(0, end)));
            result_.output.erase(0, end + 1);
        }
        return count > 0;
    }
    // A child that has ended meanwhile needs none.
    void Reply(const std::string& answer) const {
        const std::size_t size = answer.size() + 1;
        for (std::size_t sent = 0; sent < size;) {
            const ssize_t count = write(answers_, answer.c_str() + sent, size - sent);
            if (count < 0 && errno != EINTR) return;
            if (count > 0) sent += static_cast<std::size_t>(count);
        }
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
    const int answers_;
    const ChildLimits limits_;
    const ChildAnswer& answer_;
    const Clock::time_point start_ = Clock::now();
    std::optional<double> asked_;  // to end, seconds after the start
    ChildResult result_;
};

}  // namespace

ChildResult RunChild(const std::vector<std::string>& words, const ChildLimits& limits,
                     const ChildAnswer& answer) {
    Pipe output;
    Pipe answers;
    const pid_t child = Start(words, output.writing.Get(), answers.reading.Get());
    output.writing.Close();
    answers.reading.Close();
    return Watch(child, output.reading.Get(), answers.writing.Get(), limits, answer).Run();
}

std::string AskParent(const std::string& question) {
    std::cout.write(question.c_str(), static_cast<std::streamsize>(question.size() + 1)).flush();
    std::string answer;
    for (char byte = 0;;) {
        const ssize_t count = read(kAnswers, &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) throw ToolError("the process that converts the other files has ended");
        if (byte == '\0') return answer;
        answer += byte;
    }
}

}  // namespace qm::cli
