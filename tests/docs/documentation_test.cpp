// What the documents and head comments say about files is held against the tree: docs/quirks.md
// against the comments that say "Quirk:", the tests that head comments name, the files that
// ARCHITECTURE.md names. Commands: tests/interpreter/command_table_test.cpp.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
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

// A row of docs/quirks.md, or a comment of the code with the declarations that it may belong to.
struct Quirk {
    std::string file;
    std::string where;  // the row's function; of a comment, the lines of code it can stand for
    std::size_t line;
};

std::vector<Quirk> QuirkRows() {
    static const std::regex kRow(
        R"(\| `([^`]+)` `([^`]+)` \| [^|]+ \| [^|]+ \|( [^|]+ \(`\w+`\) \|)?)");
    std::vector<Quirk> rows;
    const Lines lines = ReadLines(kRoot / "docs/quirks.md");
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::smatch row;
        if (lines[i].compare(0, 3, "| `") != 0) continue;
        if (std::regex_match(lines[i], row, kRow)) {
            rows.push_back({"src/" + row.str(1), row.str(2), i + 1});
        } else {
            ADD_FAILURE()
                << "docs/quirks.md:" << i + 1
                << ": write the row as | `file` `function` | what | why | plotter (`switch`) |";
        }
    }
    return rows;
}

bool IsCode(const std::string& line) {
    const std::size_t start = line.find_first_not_of(' ');
    return start != std::string::npos && line.compare(start, 2, "//") != 0;
}

// The statement or declaration behind a comment and, less and less indented, the lines above it
// that it stands in.
std::string CodeAround(const Lines& lines, std::size_t comment) {
    std::string code;
    std::size_t next = comment;
    while (next < lines.size() && !IsCode(lines[next])) ++next;
    for (; next < lines.size(); ++next) {
        code += lines[next] + '\n';
        if (lines[next].find_first_of(";{") != std::string::npos) break;
    }
    std::size_t indent = lines[comment].find_first_not_of(' ');
    for (std::size_t i = comment; i-- > 0 && indent > 0;) {
        const std::size_t start = lines[i].find_first_not_of(' ');
        if (!IsCode(lines[i]) || start >= indent) continue;
        code += lines[i] + '\n';
        indent = start;
    }
    return code;
}

std::vector<Quirk> QuirkComments() {
    std::vector<Quirk> comments;
    for (const std::string& file : SourcesBelow("src")) {
        const Lines lines = ReadLines(kRoot / file);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const bool inside = !IsCode(lines[i]) && lines[i].find("Quirk:") != std::string::npos;
            if (inside || lines[i].find("// Quirk:") != std::string::npos)
                comments.push_back({file, CodeAround(lines, i), i + 1});
        }
    }
    return comments;
}

bool StandsAt(const Quirk& row, const Quirk& comment) {
    return row.file == comment.file &&
           std::regex_search(comment.where, std::regex("\\b" + row.where + "\\b"));
}

TEST(Documentation, QuirksAreTheCommentsOfTheCode) {
    const std::vector<Quirk> rows = QuirkRows();
    const std::vector<Quirk> comments = QuirkComments();
    for (const Quirk& row : rows) {
        EXPECT_TRUE(std::any_of(comments.begin(), comments.end(),
                                [&](const Quirk& comment) { return StandsAt(row, comment); }))
            << "docs/quirks.md:" << row.line << ": " << row.file << " has no comment Quirk: at "
            << row.where << "; correct the row, or take it out with the quirk";
    }
    for (const Quirk& comment : comments) {
        EXPECT_TRUE(std::any_of(rows.begin(), rows.end(),
                                [&](const Quirk& row) { return StandsAt(row, comment); }))
            << comment.file << ":" << comment.line
            << ": give the quirk a row in docs/quirks.md that names the function it is in";
    }
    EXPECT_EQ(rows.size(), comments.size()) << "docs/quirks.md has one row for each comment";
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
        const fs::path path(file);
        if (path.filename().string().find("_test.cpp") == std::string::npos) continue;
        // The list stands in the file's folder or, with the folder's name, in the one above it.
        bool listed = false;
        std::string name = path.filename().string();
        for (fs::path folder = path.parent_path(); !listed && folder != "tests";
             folder = folder.parent_path()) {
            if (fs::exists(kRoot / folder / "CMakeLists.txt")) {
                const Lines lines = ReadLines(kRoot / folder / "CMakeLists.txt");
                listed = std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
                    return line.find(name) != std::string::npos;
                });
            }
            name = folder.filename().string() + '/' + name;
        }
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
