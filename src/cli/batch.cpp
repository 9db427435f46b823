// See batch.h.
#include "cli/batch.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <utility>

#include "cli/child_process.h"
#include "cli/console.h"
#include "cli/done_check.h"
#include "cli/output_guard.h"
#include "cli/run_report.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

namespace fs = std::filesystem;

class Planner {
  public:
    explicit Planner(const BatchOptions& options)
        : folder_(fs::u8path(options.folder)), own_(StatusOf(options.folder)) {
        ending_ = options.ending.rfind('.', 0) == 0 ? options.ending : '.' + options.ending;
    }

    BatchPlan Plan(const std::vector<std::string>& inputs, const std::vector<std::string>& listed) {
        for (const std::string& input : inputs) {
            const auto status = input == "-" ? std::nullopt : StatusOf(input);
            if (status && status->folder) {
                Walk(fs::u8path(input), {});
            } else {
                const fs::path name =
                    input == "-" ? "standard-input" : fs::u8path(input).filename();
                Add(input, name.stem(), false);
            }
        }
        for (const std::string& input : listed) AddListed(input);
        return std::move(plan_);
    }

  private:
    void Add(const std::string& input, const fs::path& stem, bool walked) {
        plan_.jobs.push_back(
            {input, (folder_ / stem).u8string() + ending_, walked, walked, {}, {}});
    }
    // Files of one name in several folders must not meet. What leads out of the folder does not.
    void AddListed(const std::string& input) {
        fs::path below;
        for (const fs::path& part : fs::u8path(input).lexically_normal().relative_path()) {
            if (part != "..") below /= part;
        }
        Add(input, below.parent_path() / below.stem(), false);
        plan_.jobs.back().inSubfolder = true;
    }
    // `below` is the way to `folder` from the one that was named.
    void Walk(const fs::path& folder, const fs::path& below) {
        std::error_code failure;
        std::vector<fs::directory_entry> entries;
        for (fs::directory_iterator it(folder, failure), end; !failure && it != end;
             it.increment(failure)) {
            entries.push_back(*it);
        }
        if (failure) {
            plan_.jobs.push_back({folder.u8string(),
                                  {},
                                  true,
                                  true,
                                  folder.u8string() + ": cannot be read: " + failure.message(),
                                  {}});
        }
        std::sort(entries.begin(), entries.end());
        for (const fs::directory_entry& entry : entries) Visit(entry, below);
    }
    void Visit(const fs::directory_entry& entry, const fs::path& below) {
        const fs::path name = entry.path().filename();
        if (name.u8string().rfind('.', 0) == 0 || !IsWanted(entry)) {
            ++plan_.skipped;
        } else if (std::error_code failure; entry.is_directory(failure)) {
            Walk(entry.path(), below / name);
        } else {
            Add(entry.path().u8string(), below / name.stem(), true);
        }
    }
    // A link to a folder may lead back here, reading a pipe could wait forever.
    bool IsWanted(const fs::directory_entry& entry) const {
        std::error_code failure;
        if (entry.is_directory(failure)) return !entry.is_symlink(failure) && !IsOwn(entry.path());
        return entry.is_regular_file(failure);
    }
    bool IsOwn(const fs::path& folder) const {
        const auto status = StatusOf(folder.u8string());
        return own_ && status && own_->device == status->device && own_->number == status->number;
    }

    const fs::path folder_;
    const std::optional<FileStatus> own_;
    std::string ending_;
    BatchPlan plan_;
};

// Takes jobs until there are none; every thread is an apartment with components of its own.
class Runner {
  public:
    Runner(const BatchPlan& plan, const BatchOptions& options, const ConversionOptions& conversion,
           Messages& messages)
        : jobs_(plan.jobs),
          options_(options),
          conversion_(conversion),
          messages_(messages),
          guard_(InputsOf(plan), options.overwrite),
          report_(options.report),
          percents_(static_cast<std::size_t>(options.jobs), 0) {
        if (options.skipDone) done_.emplace(plan.jobs);
        counts_[Outcome::kSkipped] = plan.skipped;
    }

    // Returns the worst status.
    int Run() {
        std::vector<std::thread> others;
        for (std::size_t i = 1; i < percents_.size(); ++i) others.emplace_back([=] { Work(i); });
        Work(0);
        for (std::thread& other : others) other.join();
        if (failure_) std::rethrow_exception(failure_);
        if (options_.isChild) return status_;
        const bool nothing = counts_[Outcome::kConverted] + counts_[Outcome::kFailed] == 0;
        if (nothing && !options_.skipDone && !Interrupted()) {
            messages_.Error("no plot files were found");
            status_ = kExitNotAPlot;
        }
        if (!options_.folder.empty()) Summarise();
        return Interrupted() ? std::max(status_, kExitNotAPlot) : status_;
    }

  private:
    static std::vector<std::string> InputsOf(const BatchPlan& plan) {
        std::vector<std::string> inputs;
        for (const Job& job : plan.jobs) inputs.push_back(job.input);
        return inputs;
    }
    void Summarise() {
        messages_.Note(std::to_string(counts_[Outcome::kConverted]) + " converted, " +
                       std::to_string(counts_[Outcome::kFailed]) + " failed, " +
                       std::to_string(counts_[Outcome::kSkipped]) + " skipped" +
                       (Interrupted() ? "; interrupted" : ""));
    }
    void Work(std::size_t worker) noexcept {
        try {
            const Components components(conversion_.open.reading);
            while (!Interrupted() && !stopped_) {
                const std::size_t i = next_++;
                if (i >= jobs_.size()) return;
                Do(components, worker, i);
                const std::lock_guard<std::mutex> lock(mutex_);
                percents_[worker] = 0;
                ++finished_;
            }
        } catch (...) {  // the report cannot be written, or the memory is gone: no use going on
            stopped_ = true;
            const std::lock_guard<std::mutex> lock(mutex_);
            failure_ = std::current_exception();
        }
    }
    void Do(const Components& components, std::size_t worker, std::size_t index) {
        const Job& job = jobs_[index];
        if (done_ && done_->IsDone(job)) {
            return Record({job.input,
                           Outcome::kSkipped,
                           kExitSuccess,
                           job.input + ": done already",
                           0.0,
                           {}});
        }
        const auto start = std::chrono::steady_clock::now();
        if (options_.HasLimits() && !options_.isChild && job.problem.empty()) {
            ShowProgress(worker, index, 0);
            DoInChild(job, start);
        } else {
            FileReport report = Done(components, worker, index);
            report.seconds = SecondsSince(start);
            Record(report);
        }
    }
    const OutputFormat& FormatOf(const Job& job) const {
        return FormatFor(job.ending.empty() ? job.output : job.ending, conversion_.write.plot);
    }
    FileReport Done(const Components& components, std::size_t worker, std::size_t index) {
        const Job& job = jobs_[index];
        FileReport report;
        report.input = job.input;
        report.outcome = Outcome::kFailed;
        try {
            if (!job.problem.empty()) throw ToolError(job.problem);
            const OutputFormat& format = FormatOf(job);
            const ConversionReports reports{
                [&](int percent, bool) { ShowProgress(worker, index, percent); },
                [&](const std::string& note) { messages_.Note(note); },
                [&](const std::string& output) { Prepare(job, output, format); }};
            report.result =
                Convert(components, job.input, job.output, format, conversion_, reports);
            report.outcome = Outcome::kConverted;
        } catch (const NotAPlotError& error) {
            if (job.walked) report.outcome = Outcome::kSkipped;
            report.status = job.walked ? kExitSuccess : error.Status();
            report.message = error.what();
        } catch (const ToolError& error) {
            report.status = error.Status();
            report.message = error.what();
        } catch (const std::bad_alloc&) {
            report.status = kExitUsage;
            report.message = job.input + ": out of memory";
        }
        return report;
    }
    // What the child says about the file is its report; a child that says nothing has died of it.
    void DoInChild(const Job& job, std::chrono::steady_clock::time_point start) {
        std::vector<std::string> words = {"convert",
                                          job.walked ? "--child=walked" : "--child=named"};
        words.insert(words.end(), options_.childWords.begin(), options_.childWords.end());
        if (!job.ending.empty()) words.push_back("--to=" + job.ending);
        words.insert(words.end(), {"--", job.input, job.output});
        const OutputFormat& format = FormatOf(job);
        const auto answer = [&](const std::string& output) -> std::string {
            try {
                Claim(job, output, format);
                return {};
            } catch (const ToolError& error) {
                return error.what();
            }
        };
        const ChildResult child = RunChild(words, {options_.timeout, options_.maxMemory}, answer);
        const std::string line = child.output.substr(0, child.output.find('\n'));
        FileReport report;
        report.input = job.input;
        if (ReadOutcome(line, report.outcome, report.status)) {
            Count(report.outcome, report.status);
            return report_.Add(line);
        }
        report.outcome = Outcome::kFailed;
        report.status = kExitUsage;
        report.seconds = SecondsSince(start);
        report.message = job.input + ": " + WhyItDied(child);
        Record(report);
    }
    static std::string WhyItDied(const ChildResult& child) {
        if (child.timedOut) return "takes longer than --timeout allows";
        if (child.tooLarge) return "wants more memory than --max-memory allows";
        return "the process that converted it ended" +
               (child.signal == 0 ? "" : " by signal " + std::to_string(child.signal));
    }
    static double SecondsSince(std::chrono::steady_clock::time_point start) {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    static void MakeFolderOf(const Job& job) {
        if (!job.inSubfolder) return;
        const fs::path folder = fs::u8path(job.output).parent_path();
        std::error_code failure;
        fs::create_directories(folder, failure);
        if (failure) throw SystemError(folder.u8string(), "made", failure.value());
    }
    // The parent alone knows what the other files are and are written to.
    void Prepare(const Job& job, const std::string& output, const OutputFormat& format) {
        if (!options_.isChild) return Claim(job, output, format);
        const std::string refusal = AskParent(output);
        if (!refusal.empty()) throw ToolError(refusal);
    }
    void Claim(const Job& job, const std::string& output, const OutputFormat& format) {
        guard_.Claim(output, job.input, format);
        MakeFolderOf(job);
    }
    void Record(const FileReport& report) {
        if (report.outcome == Outcome::kFailed) {
            if (Interrupted()) return;  // the summary says so
            messages_.Error(report.message);
        } else {
            messages_.Detail(report.outcome == Outcome::kSkipped
                                 ? "skipped: " + report.message
                                 : Describe(report.input, report.result));
        }
        Count(report.outcome, report.status);
        const std::string line = JsonOf(report);
        report_.Add(line);
        if (options_.isChild) std::cout << line << std::endl;
    }
    void Count(Outcome outcome, int status) {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++counts_[outcome];
        status_ = std::max(status_, status);
    }
    void ShowProgress(std::size_t worker, std::size_t index, int percent) {
        if (options_.isChild) return;  // the parent shows it
        std::size_t all = 0;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            percents_[worker] = static_cast<std::size_t>(percent);
            all = finished_ * 100;
            for (const std::size_t part : percents_) all += part;
        }
        messages_.Progress(
            "file " + std::to_string(index + 1) + " of " + std::to_string(jobs_.size()) + ": ",
            jobs_[index].input, static_cast<int>(all / jobs_.size()));
    }

    const std::vector<Job>& jobs_;
    const BatchOptions& options_;
    const ConversionOptions& conversion_;
    Messages& messages_;
    std::optional<DoneCheck> done_;
    OutputGuard guard_;
    RunReport report_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> stopped_{false};
    std::mutex mutex_;                   // guards what follows
    std::vector<std::size_t> percents_;  // of the file that each thread is at
    std::map<Outcome, std::size_t> counts_;
    std::size_t finished_ = 0;
    int status_ = kExitSuccess;
    std::exception_ptr failure_;
};

}  // namespace

BatchPlan PlanBatch(const std::vector<std::string>& inputs, const std::vector<std::string>& listed,
                    const BatchOptions& options) {
    return Planner(options).Plan(inputs, listed);
}

int RunBatch(const BatchPlan& plan, const BatchOptions& options,
             const ConversionOptions& conversion, Messages& messages) {
    return Runner(plan, options, conversion, messages).Run();
}

}  // namespace qm::cli
