// The entry point: words as they come.
#include "cli/program.h"

int main(int count, char** words) { return qm::cli::RunProgram({words + 1, words + count}); }
