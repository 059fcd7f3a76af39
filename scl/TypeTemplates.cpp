#include "scl/TypeTemplates.h"

namespace TavScl {

namespace {

// Types nested deeper than any real model are a loop in a broken file.
constexpr int kMaxDepth = 16;

std::vector<std::string_view> split(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const auto dot = path.find('.');
        parts.push_back(path.substr(0, dot));
        if (dot == std::string_view::npos)
            break;
        path.remove_prefix(dot + 1);
    }
    return parts;
}

} // namespace

TypeTemplates::TypeTemplates(const SclXml& xml, pugi::xml_node templates) : xml_(xml) {
    const std::pair<const char*, std::unordered_map<std::string, pugi::xml_node>*> kinds[] = {
        {"LNodeType", &lnTypes_}, {"DOType", &doTypes_}, {"DAType", &daTypes_}};
    for (const auto& [element, map] : kinds)
        for (pugi::xml_node type : xml_.children(templates, element))
            map->emplace(type.attribute("id").value(), type);
}

const std::vector<LeafAttribute>* TypeTemplates::expand(const std::string& lnType,
                                                        const std::string& doName,
                                                        const std::string& daName,
                                                        const std::string& fc) {
    std::string key = lnType + '\x1f' + doName + '\x1f' + daName + '\x1f' + fc;
    auto it = expanded_.find(key);
    if (it == expanded_.end())
        it = expanded_.emplace(std::move(key), resolve(lnType, doName, daName, fc)).first;
    return it->second ? &*it->second : nullptr;
}

pugi::xml_node TypeTemplates::named(pugi::xml_node type, const char* element,
                                    std::string_view name) const {
    for (pugi::xml_node c : type.children())
        if (xml_.is(c, element) && name == c.attribute("name").value())
            return c;
    return {};
}

std::optional<std::vector<LeafAttribute>> TypeTemplates::resolve(const std::string& lnType,
                                                                 const std::string& doName,
                                                                 const std::string& daName,
                                                                 const std::string& fc) const {
    const auto ln = lnTypes_.find(lnType);
    const auto objects = split(doName);
    if (ln == lnTypes_.end() || objects.empty())
        return std::nullopt;
    pugi::xml_node object = named(ln->second, "DO", objects[0]);
    for (std::size_t i = 1; object && i < objects.size(); ++i) {
        const auto type = doTypes_.find(object.attribute("type").value());
        object = type == doTypes_.end() ? pugi::xml_node() : named(type->second, "SDO", objects[i]);
    }
    if (!object)
        return std::nullopt;
    const auto doType = doTypes_.find(object.attribute("type").value());
    if (doType == doTypes_.end())
        return std::nullopt;
    std::vector<LeafAttribute> leaves;
    if (daName.empty()) {
        addObject(doType->second, doName, fc, 0, leaves);
        return leaves;
    }
    const auto parts = split(daName);
    pugi::xml_node attribute = named(doType->second, "DA", parts[0]);
    for (std::size_t i = 1; attribute && i < parts.size(); ++i) {
        const auto type = daTypes_.find(attribute.attribute("type").value());
        attribute =
            type == daTypes_.end() ? pugi::xml_node() : named(type->second, "BDA", parts[i]);
    }
    if (!attribute)
        return std::nullopt;
    addAttribute(attribute, doName + "." + daName, 0, leaves);
    return leaves;
}

// Attributes and sub-objects in the order the type gives them, which is the
// order they go on the wire.
void TypeTemplates::addObject(pugi::xml_node doType, const std::string& name, const std::string& fc,
                              int depth, std::vector<LeafAttribute>& out) const {
    if (depth > kMaxDepth)
        return;
    for (pugi::xml_node c : doType.children()) {
        const std::string child = name + "." + c.attribute("name").value();
        if (xml_.is(c, "DA") && fc == c.attribute("fc").value()) {
            addAttribute(c, child, depth + 1, out);
        } else if (xml_.is(c, "SDO")) {
            const auto type = doTypes_.find(c.attribute("type").value());
            if (type != doTypes_.end())
                addObject(type->second, child, fc, depth + 1, out);
        }
    }
}

void TypeTemplates::addAttribute(pugi::xml_node attribute, const std::string& name, int depth,
                                 std::vector<LeafAttribute>& out) const {
    const std::string bType = attribute.attribute("bType").value();
    if (bType != "Struct") {
        out.push_back({name, bType});
        return;
    }
    const auto type = daTypes_.find(attribute.attribute("type").value());
    if (type == daTypes_.end() || depth > kMaxDepth)
        return;
    for (pugi::xml_node c : xml_.children(type->second, "BDA"))
        addAttribute(c, name + "." + c.attribute("name").value(), depth + 1, out);
}

} // namespace TavScl
