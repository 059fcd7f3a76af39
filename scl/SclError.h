#pragma once

#include <stdexcept>
#include <string>

namespace TavScl {

// A file that cannot be read as SCL: what() is "path:line: reason", or
// "path: reason" when no line is to blame.
class SclError : public std::runtime_error {
public:
    SclError(const std::string& path, int line, const std::string& reason)
        : std::runtime_error(path + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " +
                             reason),
          path_(path), line_(line), reason_(reason) {}

    const std::string& path() const { return path_; }
    int line() const { return line_; }
    const std::string& reason() const { return reason_; }

private:
    std::string path_;
    int line_;
    std::string reason_;
};

} // namespace TavScl
