// What the documents and head comments say about files is held against the tree: docs/quirks.md
// against the comments that say "Quirk:", the tests that head comments name, the files that
// ARCHITECTURE.md names. Commands: tests/interpreter/command_table_test.cpp.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const fs::path kRoot = QM_SOURCE_DIR;

Lines ReadLines(const fs::path& path) {
    Lines lines;
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

// The .h and .cpp files below `folder`, as paths from the root with forward slashes.
std::vector<std::string> SourcesBelow(const char* folder) {
    std::vector<std::string> sources;
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
        const auto ending = entry.path().extension();
        if (ending == ".h" || ending == ".cpp")
            sources.push_back(fs::relative(entry.path(), kRoot).generic_string());
    }
    std::sort(sources.begin(), sources.end());
    return sources;
}

std::vector<std::string> AllMatches(const std::string& text, const std::regex& pattern) {
    std::vector<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at)
        found.push_back((*at)[1]);
    return found;
}

// ---------------------------------------------------------------- Quirks

TEST(Documentation, QuirksAreTheCommentsOfTheCode) {
    static const std::regex kRow(
        R"(\| `([^`]+)` `([^`]+)` \| [^|]+ \| [^|]+ \|( [^|]+ \(`\w+`\) \|)?)");
    std::map<std::string, int> rows;  // by file
    for (const std::string& line : ReadLines(kRoot / "docs/quirks.md")) {
        std::smatch row;
        if (line.compare(0, 3, "| `") != 0) continue;
        ASSERT_TRUE(std::regex_match(line, row, kRow))
            << "write the row as | `file` `function` | what | why | plotter (`switch`) |: " << line;
        const std::string file = "src/" + row.str(1);
        ++rows[file];
        const Lines code = ReadLines(kRoot / file);
        const std::regex where("\\b" + row.str(2) + "\\b");
        EXPECT_TRUE(std::any_of(
            code.begin(), code.end(),
            [&](const std::string& codeLine) { return std::regex_search(codeLine, where); }))
            << "docs/quirks.md: " << file << " has no " << row.str(2);
    }
    for (const std::string& file : SourcesBelow("src")) {
        const Lines lines = ReadLines(kRoot / file);
        const auto quirks = std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
            return std::regex_search(line, std::regex("//.*Quirk:"));
        });
        EXPECT_EQ(quirks, rows[file])
            << file << ": docs/quirks.md has one row for each comment that says Quirk:";
    }
}

// ---------------------------------------------------------------- Limits

// The lines of all sources that set a constant to a number.
Lines ConstantLines() {
    Lines lines;
    for (const std::string& file : SourcesBelow("src")) {
        for (const std::string& line : ReadLines(kRoot / file))
            if (line.find(" k") != std::string::npos && line.find(" = ") != std::string::npos)
                lines.push_back(line);
    }
    return lines;
}

// The number that `name` is set to; empty when there is none, or it is no literal.
std::string ValueOf(const std::string& name, const Lines& constants) {
    const std::regex number(R"( = (?:std::\w+\{)?([\d'.e]+)\}?(?: << (\d+))?;)");
    for (const std::string& line : constants) {
        std::smatch found;
        if (line.find(' ' + name + " = ") == std::string::npos) continue;
        if (!std::regex_search(line, found, number)) continue;
        std::string digits = found[1];
        digits.erase(std::remove(digits.begin(), digits.end(), '\''), digits.end());
        const int shift = found[2].matched ? std::stoi(found[2]) : 0;
        return std::to_string(static_cast<long long>(std::stod(digits)) << shift);
    }
    return {};
}

TEST(Documentation, LimitsAreTheConstantsOfTheCode) {
    static const std::regex kConstant(R"(`(?:\w+::)?(k[A-Z]\w+)`)");
    const Lines constants = ConstantLines();
    int checked = 0;
    for (const std::string& line : ReadLines(kRoot / "docs/limits.md")) {
        for (const std::string& name : AllMatches(line, kConstant)) {
            const std::string value = ValueOf(name, constants);
            EXPECT_NE(value, "") << "docs/limits.md: " << name << " is no constant of the code";
            EXPECT_NE(line.find(value), std::string::npos)
                << "docs/limits.md: " << name << " is " << value;
            ++checked;
        }
    }
    EXPECT_GT(checked, 10);
}

// ---------------------------------------------------------------- Tests

// Whether `path` exists; its last part may hold one '*'.
bool Exists(const std::string& path) {
    const std::size_t star = path.find('*');
    if (star == std::string::npos) return fs::exists(kRoot / path);
    const std::string tail = path.substr(star + 1);
    const fs::path folder = kRoot / fs::path(path).parent_path();
    if (!fs::is_directory(folder)) return false;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.size() >= tail.size() &&
            name.compare(name.size() - tail.size(), tail.size(), tail) == 0)
            return true;
    }
    return false;
}

TEST(Documentation, HeadCommentsNameTestsThatExist) {
    static const std::regex kPath(R"(\b((tests|bench|fuzz)/[\w/.*-]*[\w/]))");
    static const std::regex kBare(R"([ (](\w+_(test|bench|fuzz)\.cpp))");
    for (const std::string& file : SourcesBelow("src")) {
        std::string head;
        for (const std::string& line : ReadLines(kRoot / file)) {
            if (line.compare(0, 2, "//") != 0) break;
            head += line.substr(2) + '\n';
        }
        for (const std::string& path : AllMatches(head, kPath))
            EXPECT_TRUE(Exists(path)) << file << ": the head comment names " << path
                                      << ", which does not exist; name the test that covers it";
        for (const std::string& name : AllMatches(head, kBare))
            ADD_FAILURE() << file << ": write the path of " << name << " from the root";
    }
}

TEST(Documentation, TestsAreBuilt) {
    for (const std::string& file : SourcesBelow("tests")) {
        // The list stands in the file's folder or, with the folder's name, in the one above it.
        const std::string name = fs::path(file).filename().string();
        if (name.find("_test.cpp") == std::string::npos) continue;
        fs::path folder = kRoot / fs::path(file).parent_path();
        if (!fs::exists(folder / "CMakeLists.txt")) folder = folder.parent_path();
        const Lines lines = ReadLines(folder / "CMakeLists.txt");
        const bool listed = std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.find(name) != std::string::npos;
        });
        EXPECT_TRUE(listed) << file << ": add it to the CMakeLists.txt of its folder";
    }
}

// ---------------------------------------------------------------- ARCHITECTURE.md

TEST(Documentation, ArchitectureNamesFilesThatExist) {
    static const std::regex kQuoted(R"(`([\w./*-]+)`)");
    static const std::regex kLink(R"(\]\(([\w./-]+)\))");
    static const std::regex kIsFile(R"(.*/.*|.*\.(h|cpp|idl|md|txt))");
    const Lines lines = ReadLines(kRoot / "ARCHITECTURE.md");
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::vector<std::string> names = AllMatches(lines[i], kQuoted);
        // In a row of the code map the files stand in the row's folder.
        const bool mapRow = lines[i].compare(0, 3, "| `") == 0 && !names.empty();
        const std::string folder = mapRow ? "src/" + names.front() : "src/";
        for (const std::string& link : AllMatches(lines[i], kLink)) names.push_back(link);
        for (const std::string& name : names) {
            if (!std::regex_match(name, kIsFile)) continue;
            EXPECT_TRUE(Exists(name) || Exists("src/" + name) || Exists(folder + name))
                << "ARCHITECTURE.md:" << i + 1 << ": there is no " << name
                << "; name the file where the thing stands now";
        }
    }
}

}  // namespace
