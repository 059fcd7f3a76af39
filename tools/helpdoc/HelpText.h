#pragma once

#include <string>
#include <vector>

namespace TavHelpDoc {

// One block of a help document: a heading or a paragraph of running text.
struct Block {
    enum class Kind { Title, Heading, Paragraph, Item };
    Kind kind;
    std::string text;
};

// Reads the help source: "= " opens the title, "## " a heading, "- " a list
// item; other lines run together into paragraphs, which blank lines end.
std::vector<Block> parseHelpText(const std::string& source);

} // namespace TavHelpDoc
