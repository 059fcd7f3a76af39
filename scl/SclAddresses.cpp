#include "scl/SclAddresses.h"

#include <cctype>
#include <charconv>
#include <optional>

namespace TavScl {

namespace {

std::optional<unsigned> number(std::string_view text, int base) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    if (base == 16 && (text.starts_with("0x") || text.starts_with("0X")))
        text.remove_prefix(2);
    unsigned value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (ec != std::errc() || end != text.data() + text.size() || text.empty())
        return std::nullopt;
    return value;
}

// "01-0C-CD-04-00-01" -> "01:0c:cd:04:00:01"; empty when it is not six octets.
std::string macText(std::string_view text) {
    std::string mac;
    int digits = 0;
    for (char c : text) {
        if (std::isxdigit(static_cast<unsigned char>(c))) {
            if (digits > 0 && digits % 2 == 0)
                mac += ':';
            mac += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            ++digits;
        } else if (c != '-' && c != ':' && !std::isspace(static_cast<unsigned char>(c))) {
            return {};
        }
    }
    return digits == 12 ? mac : std::string();
}

Address readAddress(const SclXml& xml, pugi::xml_node address, std::vector<std::string>& warnings) {
    Address a;
    for (pugi::xml_node p : xml.children(address, "P")) {
        const std::string_view type = p.attribute("type").value();
        const std::string_view value = p.child_value();
        bool good = true;
        if (type == "MAC-Address") {
            a.mac = macText(value);
            good = !a.mac.empty();
        } else if (type == "APPID") {
            const auto v = number(value, 16);
            good = v && *v <= 0xFFFF;
            if (good)
                a.appId = static_cast<std::uint16_t>(*v);
        } else if (type == "VLAN-ID") {
            const auto v = number(value, 16);
            good = v && *v <= 0xFFF;
            if (good)
                a.vlanId = static_cast<std::uint16_t>(*v);
        } else if (type == "VLAN-PRIORITY") {
            const auto v = number(value, 10);
            good = v && *v <= 7;
            if (good)
                a.vlanPriority = static_cast<std::uint8_t>(*v);
        }
        if (!good)
            warnings.push_back(xml.where(p) + std::string(type) + " '" + std::string(value) +
                               "' is not valid and is ignored");
    }
    return a;
}

void collectPhases(const SclXml& xml, pugi::xml_node node, std::map<NodeKey, std::string>& out) {
    for (pugi::xml_node c : node.children()) {
        if (xml.is(c, "SubEquipment") && *c.attribute("phase").value()) {
            for (pugi::xml_node ln : xml.children(c, "LNode"))
                out[{ln.attribute("iedName").value(), ln.attribute("ldInst").value(), lnName(ln)}] =
                    c.attribute("phase").value();
        } else if (xml.is(c, "VoltageLevel") || xml.is(c, "Bay") ||
                   xml.is(c, "ConductingEquipment") || xml.is(c, "Function") ||
                   xml.is(c, "SubFunction")) {
            collectPhases(xml, c, out);
        }
    }
}

} // namespace

std::string lnName(pugi::xml_node node) {
    return std::string(node.attribute("prefix").value()) + node.attribute("lnClass").value() +
           node.attribute("inst").value() + node.attribute("lnInst").value();
}

std::map<BlockKey, Address> readAddresses(const SclXml& xml, std::vector<std::string>& warnings) {
    std::map<BlockKey, Address> addresses;
    const std::pair<const char*, ControlKind> kinds[] = {{"SMV", ControlKind::Sv},
                                                         {"GSE", ControlKind::Goose}};
    for (pugi::xml_node net : xml.children(xml.child(xml.root(), "Communication"), "SubNetwork"))
        for (pugi::xml_node ap : xml.children(net, "ConnectedAP"))
            for (const auto& [element, kind] : kinds)
                for (pugi::xml_node block : xml.children(ap, element))
                    addresses[{ap.attribute("iedName").value(), block.attribute("ldInst").value(),
                               block.attribute("cbName").value(), kind}] =
                        readAddress(xml, xml.child(block, "Address"), warnings);
    return addresses;
}

std::map<NodeKey, std::string> readPhases(const SclXml& xml) {
    std::map<NodeKey, std::string> phases;
    for (pugi::xml_node s : xml.children(xml.root(), "Substation"))
        collectPhases(xml, s, phases);
    return phases;
}

} // namespace TavScl
