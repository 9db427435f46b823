// fuzz_dictionary plots|scripts: prints the words of that language for libFuzzer's -dict, from the
// program's own tables.
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/tokens.h"
#include "interpreter/command_table.h"
#include "raster/escape_table.h"
#include "replay/replay_calls.h"

namespace {

void Print(std::string_view word) {
    std::putchar('"');
    for (const char c : word) {
        const bool plain = c >= ' ' && c <= '~' && c != '"' && c != '\\';
        if (plain) {
            std::putchar(c);
        } else {
            std::printf("\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        }
    }
    std::puts("\"");
}

}  // namespace

int main(int count, char** words) {
    if (count != 2) return 2;
    const bool scripts = std::strcmp(words[1], "scripts") == 0;
    const auto language = scripts ? qm::fuzz::Language::kScript : qm::fuzz::Language::kPlot;
    if (scripts) {
        for (const qm::ScriptCall& call : qm::AllScriptCalls()) Print(call.name);
    } else {
        for (const qm::Command& command : qm::AllCommands()) Print(command.mnemonic);
        for (const qm::Escape& escape : qm::AllEscapes()) {
            Print("\x1b" + std::string(escape.group) + '1' + escape.letter);
        }
    }
    for (const std::string_view phrase : qm::fuzz::PhrasesOf(language)) Print(phrase);
    return 0;
}
