#include "scl/SclXml.h"

#include "scl/SclError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

namespace TavScl {

namespace {

std::vector<char> readAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw SclError(path, 0, std::string("cannot open: ") + std::strerror(errno));
    std::vector<char> text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        throw SclError(path, 0, "cannot read");
    return text;
}

std::string_view localName(std::string_view name) {
    const auto colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

} // namespace

SclXml::SclXml(const std::string& path) : path_(path), text_(readAll(path)) {
    for (std::size_t i = 0; i < text_.size(); ++i) {
        const char* nl = static_cast<const char*>(std::memchr(&text_[i], '\n', text_.size() - i));
        if (!nl)
            break;
        i = static_cast<std::size_t>(nl - text_.data());
        lineStarts_.push_back(i + 1);
    }
    if (text_.empty())
        throw SclError(path, 0, "the file is empty");
    // In place: a 50 MB substation is not copied again.
    const pugi::xml_parse_result parsed =
        doc_.load_buffer_inplace(text_.data(), text_.size(), pugi::parse_default);
    if (!parsed)
        throw SclError(path, lineAt(parsed.offset),
                       std::string("not well-formed XML: ") + parsed.description());
    root_ = doc_.document_element();
    const std::string_view rootName = root_.name();
    if (localName(rootName) != "SCL")
        throw SclError(path, lineOf(root_),
                       "not an SCL file: the root element is <" + std::string(rootName) + ">");
    prefix_ = std::string(rootName.substr(0, rootName.size() - 3));
}

int SclXml::lineAt(std::ptrdiff_t offset) const {
    if (offset < 0)
        return 0;
    const auto after =
        std::upper_bound(lineStarts_.begin(), lineStarts_.end(), static_cast<std::size_t>(offset));
    return static_cast<int>(after - lineStarts_.begin()) + 1;
}

int SclXml::lineOf(pugi::xml_node node) const {
    return lineAt(node.offset_debug());
}

std::string SclXml::where(pugi::xml_node node) const {
    return path_ + ":" + std::to_string(lineOf(node)) + ": ";
}

bool SclXml::is(pugi::xml_node node, const char* name) const {
    const std::string_view n = node.name();
    return node.type() == pugi::node_element && n.size() == prefix_.size() + std::strlen(name) &&
           n.starts_with(prefix_) && n.substr(prefix_.size()) == name;
}

pugi::xml_node SclXml::child(pugi::xml_node parent, const char* name) const {
    for (pugi::xml_node c : parent.children())
        if (is(c, name))
            return c;
    return {};
}

std::vector<pugi::xml_node> SclXml::children(pugi::xml_node parent, const char* name) const {
    std::vector<pugi::xml_node> found;
    for (pugi::xml_node c : parent.children())
        if (is(c, name))
            found.push_back(c);
    return found;
}

} // namespace TavScl
