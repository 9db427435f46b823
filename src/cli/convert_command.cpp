// qmplot convert FILE OUT, qmplot convert -o DIR FILE...: plots as pictures and documents.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <sstream>
#include <utility>

#include "cli/batch.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/conversion.h"
#include "cli/look_options.h"
#include "cli/messages.h"
#include "cli/output_guard.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

constexpr int kMaxJobs = 256;

struct ConvertOptions {
    std::string target;  // -o: a folder, or the one file
    std::string ending;  // --to; empty: not given
    std::string child;   // of a child process: whether its file was "named" or "walked"
    BatchOptions batch;
    ConversionOptions conversion;
    MessageOptions messages;
};

bool IsFolder(const std::string& path) {
    const auto status = path == "-" ? std::nullopt : StatusOf(path);
    return status && status->folder;
}

std::string EndingWithDot(const std::string& ending) {
    return ending.rfind('.', 0) == 0 ? ending : '.' + ending;
}

class Conversions {
  public:
    Conversions(const Command& command, const ParsedLine& line, ConvertOptions options)
        : command_(command),
          line_(line),
          options_(std::move(options)),
          messages_(options_.messages) {}

    int Run() {
        RefuseMarginWithoutRoom();
        WatchForInterruption();
        const auto& files = line_.operands;
        if (options_.target.empty()) {
            if (files.size() != 2 || !options_.batch.list.empty()) {
                throw Error("convert takes FILE OUT, or -o DIR and any number of files");
            }
            return ConvertOne(files[0], files[1]);
        }
        const bool isFile = options_.target == "-" ||
                            (FindFormat(options_.target) != nullptr && !IsFolder(options_.target));
        if (!isFile) return ConvertMany(files);
        if (files.size() == 1 && !IsFolder(files[0]) && options_.batch.list.empty()) {
            return ConvertOne(files[0], options_.target);
        }
        throw Error(options_.target +
                    " names one file, but there are several to convert; -o DIR takes them");
    }

  private:
    UsageError Error(const std::string& message) const { return {message, command_.name}; }
    void RefuseMarginWithoutRoom() const {
        const PageOptions& page = options_.conversion.write.page;
        const double room =
            std::min(page.paper.width, page.paper.height) - 2.0 * page.marginMillimetres;
        if (page.paper.fits && room <= 0.0) {
            throw Error("--margin leaves nothing of the paper for --fit");
        }
    }
    const OutputFormat& FormatOf(const std::string& name) const {
        const OutputFormat& format = FormatFor(name, options_.conversion.write.plot);
        RefuseOptionsOfOthers(command_, line_, format);
        return format;
    }
    const OutputFormat& FormatOfOne(const std::string& output) const {
        if (output.empty()) throw Error("OUT is empty");
        const std::string name = std::filesystem::u8path(output).filename().u8string();
        if (name[0] == '.' && EndingAt(name) == 0 && FindFormat("x" + name) != nullptr) {
            throw Error(output + " is an ending without a name before it");
        }
        const bool toStandardOutput = output == "-";
        if (toStandardOutput && options_.ending.empty()) {
            throw Error("standard output has no ending; --to chooses the format");
        }
        const bool named = toStandardOutput || FindFormat(output) == nullptr;
        if (!named && !options_.ending.empty()) {
            throw UsageError(
                "--to is for -o DIR and for standard output; " + output + " has its ending",
                command_.name);
        }
        return FormatOf(options_.ending.empty() ? output : EndingWithDot(options_.ending));
    }

    int ConvertOne(const std::string& input, const std::string& output) {
        const OutputFormat& format = FormatOfOne(output);
        const BatchOptions& batch = options_.batch;
        if (batch.HasLimits() || batch.skipDone || !batch.report.empty() || batch.isChild) {
            return RunOne({input,
                           output,
                           walked_,
                           false,
                           {},
                           options_.ending.empty() ? "" : EndingWithDot(options_.ending)});
        }
        OutputGuard guard({input}, options_.batch.overwrite);
        // At once where the name is known, not after minutes of reading.
        if (format.manyPages) guard.Claim(output, input, format);
        const Components components(options_.conversion.open.reading);
        const ConversionReports reports{[&](int percent, bool writing) {
                                            messages_.Progress(writing ? "writing " : "reading ",
                                                               writing ? output : input, percent);
                                        },
                                        [&](const std::string& note) { messages_.Note(note); },
                                        [&](const std::string& path) {
                                            if (!format.manyPages) guard.Claim(path, input, format);
                                        }};
        ConversionOptions conversion = options_.conversion;
        conversion.write.page.threads = options_.batch.jobs;  // all threads to itself
        conversion.tellUnusedPens = true;
        const ConversionResult result =
            Convert(components, input, output, format, conversion, reports);
        messages_.Detail(Describe(input, result));
        return kExitSuccess;
    }

    // As a batch of one.
    int RunOne(const Job& job) {
        if (job.output == "-") {
            throw Error("--timeout, --max-memory, --skip-done and --report want a file to write");
        }
        options_.batch.jobs = 1;
        options_.batch.folder.clear();
        TellChildren();
        return RunBatch({{job}, 0}, options_.batch, options_.conversion, messages_);
    }

    int ConvertMany(const std::vector<std::string>& files) {
        BatchOptions& batch = options_.batch;
        batch.folder = options_.target;
        if (!options_.ending.empty()) batch.ending = options_.ending;
        FormatOf(EndingWithDot(batch.ending));  // says at once when there is none
        const auto listed = NamesIn(batch);
        if (files.empty() && batch.list.empty()) throw Error("FILE is missing");
        const bool one = files.size() == 1 && batch.list.empty() && !IsFolder(files[0]);
        const BatchPlan plan = PlanBatch(files, listed, batch);
        MakeFolder(batch.folder);
        if (one) return ConvertOneInto(plan.jobs.front());
        batch.jobs = static_cast<int>(
            std::clamp<std::size_t>(plan.jobs.size(), 1, static_cast<std::size_t>(batch.jobs)));
        TellChildren();
        return RunBatch(plan, batch, options_.conversion, messages_);
    }
    // What they are not told: which files there are, and what the parent does itself.
    void TellChildren() {
        static const std::set<std::string> kOwn = {
            "output",    "to",     "jobs",    "files-from", "null",
            "skip-done", "report", "timeout", "max-memory", "child"};
        for (const auto& [option, value] : line_.given) {
            if (kOwn.count(option->name) != 0) continue;
            options_.batch.childWords.push_back("--" + option->name +
                                                (option->value.empty() ? "" : "=" + value));
        }
    }
    static void MakeFolder(const std::string& folder) {
        std::error_code failure;
        std::filesystem::create_directories(std::filesystem::u8path(folder), failure);
        if (failure) throw SystemError(folder, "made", failure.value());
    }
    int ConvertOneInto(const Job& job) {
        options_.ending.clear();
        return ConvertOne(job.input, job.output);
    }

    const Command& command_;
    const ParsedLine& line_;
    ConvertOptions options_;
    const bool walked_ = options_.child == "walked";
    Messages messages_;
};

OptionGroup OutputGroup(ConvertOptions& options) {
    Option child = {"child", 0, "KIND", "", [&options](const std::string& kind) {
                        options.child = kind;
                        options.batch.isChild = true;
                    }};
    child.hidden = true;
    Option to = TextOption("to", 0, "ENDING",
                           "Format of the files in DIR (svg if not given), of standard output, or "
                           "of an OUT whose name "
                           "does not end in one",
                           options.ending);
    std::istringstream endings(WritableEndings());
    for (std::string ending; endings >> ending;) to.words.push_back(ending.substr(1));
    return {"Output",
            {FileOption("output", 'o', "DIR|FILE",
                        "Write into this folder, which is made; the one file when it has an "
                        "ending that is written and there is one FILE",
                        options.target),
             std::move(to), PageOption(options.conversion.pages),
             Flag("force-overwrite", 0, "Replace plots that exist; other files are replaced always",
                  options.batch.overwrite),
             IntegerOption("jobs", 'j', "N",
                           "Files converted at once (1 if not given); of one file, threads that "
                           "draw its png",
                           options.batch.jobs, 1, kMaxJobs),
             std::move(child)}};
}

}  // namespace

Command ConvertCommand() {
    const auto options = std::make_shared<ConvertOptions>();
    WriteOptions& write = options->conversion.write;
    write.page.checkpoint = ThrowIfInterrupted;
    Command command;
    command.name = "convert";
    command.summary = "Convert plots; the ending of OUT chooses the format: " + WritableEndings();
    command.usages = {"[OPTIONS] FILE OUT", "[OPTIONS] --to ENDING FILE -",
                      "[OPTIONS] -o DIR FILE|FOLDER..."};
    command.operands = {{"FILE", "A plot file; '-' is standard input", true, true}};
    command.groups = {OutputGroup(*options),
                      ManyFilesGroup(options->batch),
                      SheetGroup(write.page, write.look),
                      LookGroup(write.look),
                      PictureGroup(write),
                      OpenGroup(options->conversion.open),
                      MessageGroup(options->messages)};
    command.notes = {
        "OUT '-' is standard output. Formats that hold one page (svg, png, dxf) get a file for "
        "each page of a plot that has several: OUT-1.svg, OUT-2.svg ...",
        "Folders are walked; hidden files and what is no plot are skipped there. A batch goes on "
        "after a failure, says at the end how many files were converted and ends with the worst "
        "status. No file is written over its own plot or any other of the inputs."};
    command.examples = {
        {"plan.plt plan.pdf", "All pages as one PDF"},
        {"--page 2 --dpi 300 plan.plt sheet2.png", "One page as a picture"},
        {"--to svg --page 1 plan.plt - | gzip >plan.svgz", "Into a pipe"},
        {"-o out -j 4 --to pdf plots/", "Every plot below a folder, four at once"},
        {"--paper a4 --fit --pen 1=black,0.35 plan.plt plan.pdf", "On a sheet, pen 1 thicker"},
        {"--compact plan.plt small.plt", "The same plot in fewer bytes"},
        {"--rtl --bits 1 --dpi 600 plan.plt mono.plt", "A plot of black and white dots"}};
    command.statuses = {{"0", "Everything was written"},
                        {"1", "A file is no plot, cannot be unpacked, or draws nothing"},
                        {"2", "Wrong usage, or a file cannot be read or written"}};
    command.run = [options, command](const ParsedLine& line) {
        return Conversions(command, line, *options).Run();
    };
    return command;
}

}  // namespace qm::cli
