#pragma once

#include "scl/SclModel.h"
#include "scl/SclXml.h"

#include <map>
#include <string>
#include <tuple>

namespace TavScl {

// Where a control block lives: IED, logical device instance, name.
using BlockKey = std::tuple<std::string, std::string, std::string, ControlKind>;
// Where a logical node lives: IED, logical device instance, LN name.
using NodeKey = std::tuple<std::string, std::string, std::string>;

// The Communication section's SMV and GSE addresses.
std::map<BlockKey, Address> readAddresses(const SclXml& xml, std::vector<std::string>& warnings);

// The phase of each logical node placed under an instrument transformer's
// phase in the Substation section.
std::map<NodeKey, std::string> readPhases(const SclXml& xml);

// "prefix lnClass inst" as one name: "TCTR1", "LLN0".
std::string lnName(pugi::xml_node node);

} // namespace TavScl
