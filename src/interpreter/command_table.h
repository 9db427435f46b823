// The command table: which handler acts on which two letters, and which mnemonics detection counts.
//
// Tests: tests/interpreter/command_table_test.cpp holds docs/commands.md against it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "interpreter/plotter.h"

namespace qm {

struct Command {
    const char* mnemonic;
    Slot handler;
    const char* syntax;  // for people
};

// All commands, grouped by subject.
struct CommandList {
    const Command* first;
    std::size_t count;
    const Command* begin() const { return first; }
    const Command* end() const { return first + count; }
};
CommandList AllCommands();

// The handler of the command `first``second` (upper-case letters), or null. A second byte below 'A'
// never has one.
Slot FindHandler(std::uint8_t first, std::uint8_t second);

// True for the mnemonics that count in detection: a list of its own, which holds some that have no
// handler and lacks some that have one.
bool CountsInDetection(std::uint8_t first, std::uint8_t second);

}  // namespace qm
