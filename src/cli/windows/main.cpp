// The entry point: words come in UTF-16, so that names hold whatever the system's code page is.
#include "cli/program.h"
#include "platform/text.h"

// Asks the C runtime to expand * and ? in the words, which no shell does here.
extern "C" {
int _dowildcard = -1;
}

extern "C" int wmain(int count, wchar_t** words) {
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) texts.push_back(qm::WideToUtf8(words[i]));
    return qm::cli::RunProgram(texts);
}
