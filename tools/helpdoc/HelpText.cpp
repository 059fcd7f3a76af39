#include "tools/helpdoc/HelpText.h"

#include <sstream>

namespace TavHelpDoc {

namespace {

bool startsWith(const std::string& line, const std::string& prefix) {
    return line.compare(0, prefix.size(), prefix) == 0;
}

std::string trimmed(const std::string& line) {
    const auto first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return {};
    const auto last = line.find_last_not_of(" \t\r");
    return line.substr(first, last - first + 1);
}

} // namespace

std::vector<Block> parseHelpText(const std::string& source) {
    std::vector<Block> blocks;
    bool open = false; // the last block still takes continuation lines
    std::istringstream in(source);
    for (std::string raw; std::getline(in, raw);) {
        const std::string line = trimmed(raw);
        if (line.empty()) {
            open = false;
        } else if (startsWith(line, "= ")) {
            blocks.push_back({Block::Kind::Title, line.substr(2)});
            open = false;
        } else if (startsWith(line, "## ")) {
            blocks.push_back({Block::Kind::Heading, line.substr(3)});
            open = false;
        } else if (startsWith(line, "- ")) {
            blocks.push_back({Block::Kind::Item, line.substr(2)});
            open = true;
        } else if (open) {
            blocks.back().text += " " + line;
        } else {
            blocks.push_back({Block::Kind::Paragraph, line});
            open = true;
        }
    }
    return blocks;
}

} // namespace TavHelpDoc
