#pragma once

#include <string>

namespace Tav {

// What the host shows of a module before and while it runs: its title and icon.
class ShellDescriptor {
public:
    // `listed`: whether the host lists the module among its tools.
    ShellDescriptor(std::string iconPath, std::string title, bool listed);

    const std::string& iconPath() const { return iconPath_; }
    const std::string& title() const { return title_; }
    bool listed() const { return listed_; }

private:
    std::string iconPath_;
    std::string title_;
    bool listed_;
};

} // namespace Tav
