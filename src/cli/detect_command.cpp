// qmplot detect FILE...: which of the files are plot files, a line each.
#include <qmfilter.h>

#include <iostream>
#include <memory>
#include <vector>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/plots.h"
#include "common/tool_error.h"
#include "host/document_node.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

// What the filter's first look says; empty when it is no plot file. Throws ToolError.
std::string FormatOf(const std::string& path) {
    const InputFile file(path);
    const auto source = OpenSource(file);
    const auto document = MakeObject<DocumentNode>(SHORT{QM_DOCUMENT});
    const auto filter = MakeFilter();
    if (!document) throw std::bad_alloc();
    const HRESULT status = filter->OpenDocument(source.Get(), document.Get(), 0);
    if (status == E_FAIL) return {};
    if (FAILED(status)) {
        throw ToolError(file.Name() + ": cannot be opened: " + StatusName(status), kExitNotAPlot);
    }
    const Variant* const format = document->Attributes().Find(L"Format");
    return format == nullptr ? std::string() : WideToUtf8(format->AsText());
}

// One unreadable file does not keep the others from being told.
int Detect(const std::vector<std::string>& files) {
    const Components components;
    StandardOutput output;
    int result = kExitSuccess;
    for (const std::string& file : files) {
        try {
            const std::string format = FormatOf(file);
            output.Write(file + ": " + (format.empty() ? "not a plot file" : format) + "\n");
            if (format.empty()) result = std::max(result, kExitNotAPlot);
        } catch (const ToolError& error) {
            std::cerr << "qmplot: " << error.what() << '\n';
            result = std::max(result, error.Status());
        }
    }
    output.Finish();
    return result;
}

}  // namespace

Command DetectCommand() {
    Command command;
    command.name = "detect";
    command.summary = "Tell which files are plot files: HPGL/2, Nemetschek Allplan or none";
    command.usages = {"FILE..."};
    command.operands = {{"FILE", "The files to look at", true}};
    command.run = [](const ParsedLine& line) { return Detect(line.operands); };
    return command;
}

}  // namespace qm::cli
