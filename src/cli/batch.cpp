// See batch.h.
#include "cli/batch.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "cli/console.h"
#include "cli/output_guard.h"
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

    BatchPlan Plan(const std::vector<std::string>& inputs) {
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
        return std::move(plan_);
    }

  private:
    void Add(const std::string& input, const fs::path& stem, bool walked) {
        plan_.jobs.push_back({input, (folder_ / stem).u8string() + ending_, walked, {}});
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
                                  folder.u8string() + ": cannot be read: " + failure.message()});
        }
        std::sort(entries.begin(), entries.end());
        for (const fs::directory_entry& entry : entries) Visit(entry, below);
    }
    void Visit(const fs::directory_entry& entry, const fs::path& below) {
        const fs::path name = entry.path().filename();
        std::error_code failure;
        if (name.u8string().rfind('.', 0) == 0) {
            ++plan_.skipped;
        } else if (!entry.is_directory(failure)) {
            // Reading a pipe could wait forever, and a link may lead nowhere.
            if (!entry.is_regular_file(failure))
                ++plan_.skipped;
            else
                Add(entry.path().u8string(), below / name.stem(), true);
        } else if (entry.is_symlink(failure) || IsOwn(entry.path())) {
            ++plan_.skipped;
        } else {
            Walk(entry.path(), below / name);
        }
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
          conversion_(conversion),
          messages_(messages),
          guard_(InputsOf(plan), options.overwrite),
          skipped_(plan.skipped),
          percents_(static_cast<std::size_t>(options.jobs), 0) {}

    int Run() {
        std::vector<std::thread> others;
        for (std::size_t i = 1; i < percents_.size(); ++i) others.emplace_back([=] { Work(i); });
        Work(0);
        for (std::thread& other : others) other.join();
        if (converted_ + failed_ == 0 && !Interrupted()) {
            messages_.Error("no plot files were found");
            status_ = std::max(status_, kExitNotAPlot);
        }
        messages_.Note(std::to_string(converted_) + " converted, " + std::to_string(failed_) +
                       " failed, " + std::to_string(skipped_) + " skipped" +
                       (Interrupted() ? "; interrupted" : ""));
        return Interrupted() ? std::max(status_, kExitNotAPlot) : status_;
    }

  private:
    static std::vector<std::string> InputsOf(const BatchPlan& plan) {
        std::vector<std::string> inputs;
        for (const Job& job : plan.jobs) inputs.push_back(job.input);
        return inputs;
    }
    void Work(std::size_t worker) {
        const Components components(conversion_.open.reading);
        while (!Interrupted()) {
            const std::size_t i = next_++;
            if (i >= jobs_.size()) return;
            Do(components, worker, i);
            const std::lock_guard<std::mutex> lock(mutex_);
            percents_[worker] = 0;
            ++done_;
        }
    }
    void Do(const Components& components, std::size_t worker, std::size_t index) {
        const Job& job = jobs_[index];
        try {
            if (!job.problem.empty()) throw ToolError(job.problem);
            const OutputFormat& format = FormatFor(job.output, conversion_.write.plot.rtl);
            const ConversionReports reports{
                [&](int percent, bool) { ShowProgress(worker, index, percent); },
                [&](const std::string& note) { messages_.Note(note); },
                [&](const std::string& output) { Prepare(job, output, format); }};
            const ConversionResult result =
                Convert(components, job.input, job.output, format, conversion_, reports);
            messages_.Detail(Describe(job.input, result));
            ++converted_;
        } catch (const NotAPlotError& error) {
            if (job.walked) {
                messages_.Detail(std::string("skipped: ") + error.what());
                ++skipped_;
            } else {
                Fail(error.what(), error.Status());
            }
        } catch (const ToolError& error) {
            Fail(error.what(), error.Status());
        } catch (const std::bad_alloc&) {
            Fail(job.input + ": out of memory", kExitUsage);
        }
    }
    void Prepare(const Job& job, const std::string& output, const OutputFormat& format) {
        guard_.Claim(output, job.input, format);
        if (!job.walked) return;
        const fs::path folder = fs::u8path(output).parent_path();
        std::error_code failure;
        fs::create_directories(folder, failure);
        if (failure) throw SystemError(folder.u8string(), "made", failure.value());
    }
    void Fail(const std::string& message, int status) {
        if (Interrupted()) return;  // the summary says so
        messages_.Error(message);
        ++failed_;
        const std::lock_guard<std::mutex> lock(mutex_);
        status_ = std::max(status_, status);
    }
    void ShowProgress(std::size_t worker, std::size_t index, int percent) {
        std::size_t all = 0;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            percents_[worker] = static_cast<std::size_t>(percent);
            all = done_ * 100;
            for (const std::size_t part : percents_) all += part;
        }
        messages_.Progress(
            "file " + std::to_string(index + 1) + " of " + std::to_string(jobs_.size()) + ": ",
            jobs_[index].input, static_cast<int>(all / jobs_.size()));
    }

    const std::vector<Job>& jobs_;
    const ConversionOptions& conversion_;
    Messages& messages_;
    OutputGuard guard_;
    std::atomic<std::size_t> next_{0};
    std::atomic<std::size_t> converted_{0};
    std::atomic<std::size_t> failed_{0};
    std::atomic<std::size_t> skipped_;
    std::mutex mutex_;                   // guards what follows
    std::vector<std::size_t> percents_;  // of the file that each thread is at
    std::size_t done_ = 0;
    int status_ = kExitSuccess;
};

}  // namespace

BatchPlan PlanBatch(const std::vector<std::string>& inputs, const BatchOptions& options) {
    return Planner(options).Plan(inputs);
}

int RunBatch(const BatchPlan& plan, const BatchOptions& options,
             const ConversionOptions& conversion, Messages& messages) {
    return Runner(plan, options, conversion, messages).Run();
}

}  // namespace qm::cli
