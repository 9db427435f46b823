// See child_process.h.
#include "cli/child_process.h"

#include <windows.h>

#include <io.h>
#include <psapi.h>

#include <chrono>
#include <cstring>
#include <iostream>
#include <optional>
#include <utility>

#include "cli/console.h"
#include "common/tool_error.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

using Clock = std::chrono::steady_clock;

// The C runtime's number of the file where a child reads answers; its standard input may be the
// plot.
constexpr int kAnswers = 3;

// Closed at the end of the scope.
class Kept {
  public:
    explicit Kept(HANDLE handle) : handle_(handle) {}
    ~Kept() { Close(); }
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
    HANDLE Get() const { return handle_; }
    void Close() {
        if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
    }

  private:
    HANDLE handle_;
};

[[noreturn]] void ThrowNotStarted() {
    throw ToolError("a child process cannot be started: error " + std::to_string(GetLastError()));
}

// A word as the C runtime takes command lines apart: quotes and the backslashes before them are
// escaped.
std::wstring Quoted(const std::wstring& word) {
    std::wstring out = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"') out.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        out += c;
    }
    return out.append(backslashes, L'\\') + L'"';
}

std::wstring ThisProgram() {
    std::wstring path(32768, L'\0');  // the system's limit
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

// Whoever belongs to it ends with it, and it with this process, however that ends.
HANDLE MakeJob() {
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

// Neither end is inherited unless LetInherit says so.
struct Pipe {
    Pipe() : Pipe(MakeEnds()) {}

    Kept reading;
    Kept writing;

  private:
    explicit Pipe(std::pair<HANDLE, HANDLE> ends) : reading(ends.first), writing(ends.second) {}
    static std::pair<HANDLE, HANDLE> MakeEnds() {
        std::pair<HANDLE, HANDLE> ends;
        if (CreatePipe(&ends.first, &ends.second, nullptr, 0) == FALSE) ThrowNotStarted();
        return ends;
    }
};

void LetInherit(HANDLE handle) {
    SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

// How C runtimes tell theirs of open files: a count, a byte of flags each, the handles.
std::string FilesOf(HANDLE answers) {
    constexpr int kCount = kAnswers + 1;
    constexpr char kOpenPipe = 0x09;
    std::string files(sizeof kCount + kCount * (1 + sizeof(HANDLE)), '\0');
    std::memcpy(files.data(), &kCount, sizeof kCount);
    files[sizeof kCount + kAnswers] = kOpenPipe;
    std::memcpy(files.data() + files.size() - sizeof answers, &answers, sizeof answers);
    return files;
}

// Suspended, so that it does nothing outside the job. In a group of its own, so that it alone can
// be asked to end.
PROCESS_INFORMATION Start(const std::vector<std::string>& words, HANDLE output, HANDLE answers) {
    LetInherit(output);
    LetInherit(answers);
    std::string files = FilesOf(answers);
    std::wstring line = Quoted(ThisProgram());
    for (const std::string& word : words) line += L' ' + Quoted(Utf8ToWide(word));
    STARTUPINFOW how{};
    how.cb = sizeof how;
    how.dwFlags = STARTF_USESTDHANDLES;
    how.cbReserved2 = static_cast<WORD>(files.size());
    how.lpReserved2 = reinterpret_cast<BYTE*>(files.data());
    how.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    how.hStdOutput = output;
    how.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION child{};
    if (CreateProcessW(ThisProgram().c_str(), line.data(), nullptr, nullptr, TRUE,
                       CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &how,
                       &child) == FALSE) {
        ThrowNotStarted();
    }
    return child;
}

// Reads what the child writes until it ends.
class Watch {
  public:
    Watch(const PROCESS_INFORMATION& child, HANDLE pipe, HANDLE answers, const ChildLimits& limits,
          const ChildAnswer& answer)
        : child_(child), pipe_(pipe), answers_(answers), limits_(limits), answer_(answer) {}

    ChildResult Run() {
        constexpr DWORD kTurnMilliseconds = 20;
        while (WaitForSingleObject(child_.hProcess, kTurnMilliseconds) == WAIT_TIMEOUT) {
            ReadSome();
            Hurry();
        }
        ReadSome();
        DWORD status = 0;
        GetExitCodeProcess(child_.hProcess, &status);
        // Exceptions end a process with a status of this kind.
        constexpr DWORD kSevereError = 0xC0000000;
        if (status >= kSevereError) result_.signal = static_cast<int>(status & 0xFFFF);
        return std::move(result_);
    }

  private:
    void ReadSome() {
        char bytes[4096];
        DWORD waiting = 0;
        while (PeekNamedPipe(pipe_, nullptr, 0, nullptr, &waiting, nullptr) != FALSE &&
               waiting > 0) {
            DWORD count = 0;
            if (ReadFile(pipe_, bytes, sizeof bytes, &count, nullptr) == FALSE) return;
            result_.output.append(bytes, count);
        }
        for (std::size_t end; (end = result_.output.find('\0')) != std::string::npos;) {
            const std::string answer = answer_(result_.output.substr(0, end));
            result_.output.erase(0, end + 1);
            // A child that has ended meanwhile needs none.
            DWORD done = 0;
            WriteFile(answers_, answer.c_str(), static_cast<DWORD>(answer.size() + 1), &done,
                      nullptr);
        }
    }
    void Hurry() {
        constexpr double kPatience = 2.0;
        const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
        if (asked_) {
            if (seconds > *asked_ + kPatience) End();
            return;
        }
        if (limits_.megabytes > 0 && ResidentMegabytes() > limits_.megabytes) {
            result_.tooLarge = true;
            asked_ = seconds;
            End();
            return;
        }
        result_.timedOut = limits_.seconds > 0.0 && seconds > limits_.seconds;
        if (!result_.timedOut && !Interrupted()) return;
        asked_ = seconds;
        GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, child_.dwProcessId);
    }
    void End() { TerminateProcess(child_.hProcess, kExitUsage); }
    // 0 where the system does not tell.
    int ResidentMegabytes() const {
        PROCESS_MEMORY_COUNTERS memory{};
        if (K32GetProcessMemoryInfo(child_.hProcess, &memory, sizeof memory) == FALSE) return 0;
        return static_cast<int>(memory.WorkingSetSize >> 20);
    }

    const PROCESS_INFORMATION child_;
    const HANDLE pipe_;
    const HANDLE answers_;
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
    const Kept job(MakeJob());
    const PROCESS_INFORMATION child = Start(words, output.writing.Get(), answers.reading.Get());
    const Kept process(child.hProcess);
    const Kept thread(child.hThread);
    AssignProcessToJobObject(job.Get(), child.hProcess);
    ResumeThread(child.hThread);
    output.writing.Close();
    answers.reading.Close();
    return Watch(child, output.reading.Get(), answers.writing.Get(), limits, answer).Run();
}

std::string AskParent(const std::string& question) {
    std::cout.write(question.c_str(), static_cast<std::streamsize>(question.size() + 1)).flush();
    std::string answer;
    for (char byte = 0;;) {
        if (_read(kAnswers, &byte, 1) != 1) {
            throw ToolError("the process that converts the other files has ended");
        }
        if (byte == '\0') return answer;
        answer += byte;
    }
}

}  // namespace qm::cli
