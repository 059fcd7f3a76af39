#pragma once

#include "scl/SclModel.h"
#include "scl/SclXml.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace TavScl {

// The data type templates of one file, and what a data set member expands to
// through them. Expansions are remembered: a substation's hundreds of devices
// share a handful of types.
class TypeTemplates {
public:
    TypeTemplates(const SclXml& xml, pugi::xml_node templates);

    // The leaf attributes, named from the data object on ("Amp.instMag.i"),
    // of data object `doName` (SDOs dotted) and attribute `daName` (may be
    // empty: the whole object, every attribute of functional constraint `fc`)
    // in a logical node of type `lnType`. Null when the templates do not hold it.
    const std::vector<LeafAttribute>* expand(const std::string& lnType, const std::string& doName,
                                             const std::string& daName, const std::string& fc);

private:
    std::optional<std::vector<LeafAttribute>> resolve(const std::string& lnType,
                                                      const std::string& doName,
                                                      const std::string& daName,
                                                      const std::string& fc) const;
    void addObject(pugi::xml_node doType, const std::string& name, const std::string& fc, int depth,
                   std::vector<LeafAttribute>& out) const;
    void addAttribute(pugi::xml_node attribute, const std::string& name, int depth,
                      std::vector<LeafAttribute>& out) const;
    pugi::xml_node named(pugi::xml_node type, const char* element, std::string_view name) const;

    const SclXml& xml_;
    std::unordered_map<std::string, pugi::xml_node> lnTypes_, doTypes_, daTypes_;
    std::unordered_map<std::string, std::optional<std::vector<LeafAttribute>>> expanded_;
};

} // namespace TavScl
