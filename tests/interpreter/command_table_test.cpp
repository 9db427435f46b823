// docs/commands.md lists the commands for people; it has to name each one, with the syntax that
// stands in the table, and no other.
#include "interpreter/command_table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

namespace {

// "| `AA` | `AA x,y;` | ..." gives {"AA", "AA x,y;"}. In a table's cell '|' is written "\|".
std::map<std::string, std::string> DocumentedCommands() {
    std::map<std::string, std::string> commands;
    std::ifstream file(QM_DOCS "/commands.md");
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, 3, "| `") != 0) continue;
        const std::string middle = "` | `";
        const std::size_t syntax = line.find(middle) + middle.size();
        std::string text = line.substr(syntax, line.find("` |", syntax) - syntax);
        for (std::size_t at; (at = text.find("\\|")) != std::string::npos;) text.erase(at, 1);
        commands[line.substr(3, 2)] = text;
    }
    return commands;
}

TEST(CommandTable, IsWhatTheDocumentationLists) {
    std::map<std::string, std::string> known;
    for (const qm::Command& command : qm::AllCommands()) known[command.mnemonic] = command.syntax;
    EXPECT_EQ(DocumentedCommands(), known);
}

}  // namespace
