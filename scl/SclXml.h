#pragma once

#include <pugixml.hpp>

#include <string>
#include <vector>

namespace TavScl {

// An SCL file parsed into a DOM, with what messages need: the line of any
// element. Elements of other namespaces than the root's (private extensions)
// are invisible through `child` and `children`.
class SclXml {
public:
    // Throws SclError naming the file and the line when the file cannot be
    // read, is not well-formed XML or its root is not <SCL>.
    explicit SclXml(const std::string& path);
    SclXml(const SclXml&) = delete;
    SclXml& operator=(const SclXml&) = delete;

    const std::string& path() const { return path_; }
    pugi::xml_node root() const { return root_; }
    int lineOf(pugi::xml_node node) const;
    // "path:line: " for warnings about the node.
    std::string where(pugi::xml_node node) const;

    bool is(pugi::xml_node node, const char* localName) const;
    pugi::xml_node child(pugi::xml_node parent, const char* localName) const;
    std::vector<pugi::xml_node> children(pugi::xml_node parent, const char* localName) const;

private:
    int lineAt(std::ptrdiff_t offset) const;

    std::string path_;
    std::vector<char> text_;
    std::vector<std::size_t> lineStarts_; // byte offset of every line after the first
    pugi::xml_document doc_;
    pugi::xml_node root_;
    std::string prefix_; // "scl:" when the root is prefixed
};

} // namespace TavScl
