// InputFile: the plot named on the command line, open for reading. "-" and other things that cannot
// be read twice (pipes) are copied to a temporary file first, so that a gigabyte of them costs no
// memory. posix/input_file.cpp, windows/input_file.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace qm::cli {

class InputFile {
  public:
    // Throws ToolError when `path` is a folder or cannot be read.
    explicit InputFile(const std::string& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    // As people know it: the path, or "standard input".
    const std::string& Name() const { return name_; }
    // A path that opens the same bytes again while this object lives.
    std::string Path() const;
    std::uint64_t Size() const { return size_; }
    // Up to `size` bytes from the current position; 0 at the end. Throws ToolError.
    std::size_t Read(void* buffer, std::size_t size);

  private:
    void Spool();

    std::string name_;
    std::string path_;
    int file_ = -1;
    std::uint64_t size_ = 0;
    std::shared_ptr<void> copy_;  // deletes the copy where it cannot be without a name
};

}  // namespace qm::cli
