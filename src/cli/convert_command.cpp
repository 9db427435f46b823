// qmplot convert FILE OUT, qmplot convert -o DIR FILE...: plots as pictures and documents.
#include <atomic>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/conversion.h"
#include "cli/plots.h"
#include "cli/progress_bar.h"
#include "cli/reading_option.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

constexpr int kMaxJobs = 256;
constexpr int kMaxPage = 1000000;
constexpr double kMinDpi = 1.0;
constexpr double kMaxDpi = 10000.0;

struct ConvertOptions {
    std::vector<std::string> files;
    std::string folder;          // empty: FILE OUT
    std::string ending = "svg";  // of the files in the folder
    int jobs = 1;
    ConversionOptions conversion;
};

struct Job {
    std::string input;
    std::string output;
};

int ConvertOne(const Job& job, const ConversionOptions& options) {
    const Components components(options.reading);
    ProgressBar bar(job.input);
    const ConversionReports reports{
        [&](int percent) { bar.Show(percent); },
        [](const std::string& note) { std::cerr << "qmplot: " << note << '\n'; },
        {}};
    Convert(job.input, job.output, options, reports);
    return kExitSuccess;
}

ToolError MeetsAnother(const std::string& input, const std::string& output,
                       const std::string& other) {
    return ToolError(std::string(input)
                         .append(": would be written to ")
                         .append(output)
                         .append(", as ")
                         .append(other)
                         .append("; convert one of them to another folder"));
}

// DIR/NAME.svg for each file; two files must not meet in one.
std::vector<Job> JobsInto(const ConvertOptions& options) {
    std::vector<Job> jobs;
    std::map<std::string, std::string> inputOf;
    for (const std::string& input : options.files) {
        const std::filesystem::path name =
            input == "-" ? "standard-input" : std::filesystem::path(input).filename();
        std::string output = (std::filesystem::path(options.folder) / name.stem()).string();
        if (options.ending.rfind('.', 0) != 0) output += '.';
        output += options.ending;
        const auto [other, isNew] = inputOf.emplace(output, input);
        if (!isNew) throw MeetsAnother(input, output, other->second);
        jobs.push_back({input, output});
    }
    return jobs;
}

// Takes jobs until there are none; every thread is an apartment with components of its own.
class JobRunner {
  public:
    JobRunner(const std::vector<Job>& jobs, ConversionOptions options)
        : jobs_(jobs), options_(std::move(options)) {}

    int Run(int threads) {
        std::vector<std::thread> others;
        for (int i = 1; i < threads; ++i) others.emplace_back([this] { Work(); });
        Work();
        for (std::thread& other : others) other.join();
        if (next_ < jobs_.size()) {
            Say("interrupted, not all files were converted", kExitNotAPlot);
        }
        return status_;
    }

  private:
    void Work() {
        const Components components(options_.reading);
        while (!Interrupted()) {
            const std::size_t i = next_++;
            if (i >= jobs_.size()) return;
            const ConversionReports reports{
                [](int) {}, [this](const std::string& note) { Say(note, 0); },
                [&](const std::string& output) { Claim(output, jobs_[i].input); }};
            try {
                Convert(jobs_[i].input, jobs_[i].output, options_, reports);
            } catch (const ToolError& error) {
                Say(error.what(), error.Status());
            } catch (const std::bad_alloc&) {
                Say(jobs_[i].input + ": out of memory", kExitUsage);
            }
            const std::lock_guard<std::mutex> lock(mutex_);
            bar_.Show(static_cast<int>(++done_ * 100 / jobs_.size()));
        }
    }
    void Claim(const std::string& output, const std::string& input) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto [other, isNew] = inputOf_.emplace(output, input);
        if (!isNew) throw MeetsAnother(input, output, other->second);
    }
    void Say(const std::string& message, int status) {
        const std::lock_guard<std::mutex> lock(mutex_);
        bar_.Hide();
        std::cerr << "qmplot: " << message << '\n';
        status_ = std::max(status_, status);
    }

    const std::vector<Job>& jobs_;
    const ConversionOptions options_;
    std::atomic<std::size_t> next_{0};
    std::mutex mutex_;  // guards what follows
    ProgressBar bar_{"converting"};
    std::map<std::string, std::string> inputOf_;  // by what is written
    std::size_t done_ = 0;
    int status_ = kExitSuccess;
};

// A file alone has all threads to itself.
ConversionOptions ConversionOf(const ConvertOptions& options, std::size_t files) {
    ConversionOptions conversion = options.conversion;
    if (files == 1) conversion.write.page.threads = options.jobs;
    return conversion;
}

int ConvertMany(const ConvertOptions& options) {
    const std::vector<Job> jobs = JobsInto(options);
    FormatFor(jobs.front().output);  // says at once when there is none
    std::error_code failure;
    std::filesystem::create_directories(options.folder, failure);
    if (failure) throw SystemError(options.folder, "made", failure.value());
    const int threads = std::min<int>(options.jobs, static_cast<int>(jobs.size()));
    return JobRunner(jobs, ConversionOf(options, jobs.size())).Run(threads);
}

int RunConvert(const ConvertOptions& options) {
    WatchForInterruption();
    if (!options.folder.empty()) return ConvertMany(options);
    if (options.files.size() != 2) {
        throw ToolError("convert takes FILE OUT, or -o DIR and any number of files");
    }
    return ConvertOne({options.files[0], options.files[1]}, ConversionOf(options, 1));
}

}  // namespace

Command ConvertCommand() {
    const auto options = std::make_shared<ConvertOptions>();
    WriteOptions& write = options->conversion.write;
    write.page.checkpoint = ThrowIfInterrupted;
    Option ending = TextOption("to", 0, "ENDING", "Format of the files in DIR; svg if not given",
                               options->ending);
    ending.needs = "output";
    Option bits = ChoiceOption("bits", "1|8|24", "plt with --rtl: bits of a dot, 24 if not given",
                               [&write](const std::string& n) { write.plot.bits = std::stoi(n); });
    bits.needs = "rtl";
    Command command;
    command.name = "convert";
    command.summary = "Convert a plot; the ending of OUT chooses the format: " + WritableEndings();
    command.usages = {"[OPTIONS] FILE OUT", "[OPTIONS] -o DIR FILE..."};
    command.operands = {{"FILE", "FILE OUT, or with -o any number of files", true}};
    command.groups = {
        {"Options",
         {TextOption("output", 'o', "DIR", "Write into this folder", options->folder),
          std::move(ending),
          IntegerOption("jobs", 'j', "N",
                        "Files converted at once; of one file, threads that draw its png",
                        options->jobs, 1, kMaxJobs),
          IntegerOption("page", 0, "N", "Only this page, from 1", options->conversion.page, 1,
                        kMaxPage),
          NumberOption(
              "dpi", "N", "Dots per inch of png (150 if not given) and of plt with --rtl (300)",
              [&write](double dpi) { write.page.dpi = write.plot.rtlDpi = dpi; }, kMinDpi, kMaxDpi),
          Flag("no-antialias", 0, "png: dots have the colours of the plot, edges are hard",
               write.page.smooth, false),
          Flag("rtl", 0, "plt: HP-RTL, each page as a picture, instead of HP-GL/2", write.plot.rtl),
          std::move(bits)}},
        ReadingOptions(options->conversion.reading)};
    command.run = [options](const ParsedLine& line) {
        options->files = line.operands;
        return RunConvert(*options);
    };
    return command;
}

}  // namespace qm::cli
