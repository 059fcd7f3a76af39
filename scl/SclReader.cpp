#include "scl/SclReader.h"

#include "scl/SclAddresses.h"
#include "scl/SclXml.h"
#include "scl/TypeTemplates.h"

#include <charconv>
#include <unordered_map>

namespace TavScl {

namespace {

struct NodeInfo {
    std::string lnType;
    std::string description;
};
// Per logical device instance, its logical nodes by name.
using IedNodes = std::unordered_map<std::string, std::unordered_map<std::string, NodeInfo>>;

std::optional<std::uint32_t> unsignedAttribute(pugi::xml_node node, const char* name) {
    const std::string_view text = node.attribute(name).value();
    std::uint32_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || ec != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

SampleMode sampleMode(std::string_view text) {
    if (text == "SmpPerSec")
        return SampleMode::PerSecond;
    if (text == "SecPerSmp")
        return SampleMode::SecondsPerSample;
    return SampleMode::PerPeriod;
}

class FileReader {
public:
    explicit FileReader(const std::string& path)
        : xml_(path), templates_(xml_, xml_.child(xml_.root(), "DataTypeTemplates")) {
        file_.path = path;
        file_.version = xml_.root().attribute("version").value();
        file_.revision = xml_.root().attribute("revision").value();
        if (file_.version.empty())
            file_.version = "2003";
        addresses_ = readAddresses(xml_, file_.warnings);
        phases_ = readPhases(xml_);
    }

    SclFile read() {
        for (pugi::xml_node ied : xml_.children(xml_.root(), "IED"))
            readIed(ied);
        return std::move(file_);
    }

private:
    std::vector<pugi::xml_node> logicalDevices(pugi::xml_node ied) const {
        std::vector<pugi::xml_node> devices;
        for (pugi::xml_node ap : xml_.children(ied, "AccessPoint"))
            for (pugi::xml_node ld : xml_.children(xml_.child(ap, "Server"), "LDevice"))
                devices.push_back(ld);
        return devices;
    }

    void readIed(pugi::xml_node ied) {
        Ied info{ied.attribute("name").value(), ied.attribute("desc").value(),
                 ied.attribute("manufacturer").value(), ied.attribute("type").value()};
        const auto devices = logicalDevices(ied);
        IedNodes nodes;
        for (pugi::xml_node ld : devices) {
            auto& byName = nodes[ld.attribute("inst").value()];
            for (pugi::xml_node ln : ld.children())
                if (xml_.is(ln, "LN0") || xml_.is(ln, "LN"))
                    byName[lnName(ln)] = {ln.attribute("lnType").value(),
                                          ln.attribute("desc").value()};
        }
        for (pugi::xml_node ld : devices)
            readDevice(info.name, ld, nodes);
        file_.ieds.push_back(std::move(info));
    }

    void readDevice(const std::string& ied, pugi::xml_node ld, const IedNodes& nodes) {
        const pugi::xml_node ln0 = xml_.child(ld, "LN0");
        const std::string inst = ld.attribute("inst").value();
        const std::string given = ld.attribute("ldName").value();
        const std::string ldName = given.empty() ? ied + inst : given;
        const std::pair<const char*, ControlKind> kinds[] = {
            {"SampledValueControl", ControlKind::Sv}, {"GSEControl", ControlKind::Goose}};
        for (const auto& [element, kind] : kinds) {
            for (pugi::xml_node block : xml_.children(ln0, element)) {
                ControlBlock c = readBlock(block, kind, ied, ldName);
                const auto address = addresses_.find({ied, inst, c.name, kind});
                if (address != addresses_.end())
                    c.address = address->second;
                const std::string dataSet = block.attribute("datSet").value();
                if (!dataSet.empty())
                    c.dataSet = readDataSet(ln0, dataSet, ied, inst, nodes, c);
                file_.controls.push_back(std::move(c));
            }
        }
    }

    ControlBlock readBlock(pugi::xml_node block, ControlKind kind, const std::string& ied,
                           const std::string& ldName) const {
        ControlBlock c;
        c.kind = kind;
        c.ied = ied;
        c.ldName = ldName;
        c.name = block.attribute("name").value();
        c.confRev = unsignedAttribute(block, "confRev");
        c.file = file_.path;
        c.line = xml_.lineOf(block);
        const std::string dataSet = block.attribute("datSet").value();
        if (!dataSet.empty())
            c.dataSetReference = ldName + "/LLN0$" + dataSet;
        if (kind == ControlKind::Goose) {
            c.reference = ldName + "/LLN0$GO$" + c.name;
            c.id = block.attribute("appID").value();
            if (c.id.empty())
                c.id = c.reference;
            return c;
        }
        const bool multicast = block.attribute("multicast").as_bool(true);
        c.reference = ldName + (multicast ? "/LLN0$MS$" : "/LLN0$US$") + c.name;
        c.id = block.attribute("smvID").value();
        c.smpRate = unsignedAttribute(block, "smpRate");
        c.smpMod = sampleMode(block.attribute("smpMod").value());
        c.nofAsdu = unsignedAttribute(block, "nofASDU");
        return c;
    }

    std::optional<DataSet> readDataSet(pugi::xml_node ln0, const std::string& name,
                                       const std::string& ied, const std::string& inst,
                                       const IedNodes& nodes, const ControlBlock& c) {
        for (pugi::xml_node ds : xml_.children(ln0, "DataSet")) {
            if (name != ds.attribute("name").value())
                continue;
            DataSet set{name, {}};
            for (pugi::xml_node fcda : xml_.children(ds, "FCDA"))
                set.members.push_back(readMember(fcda, ied, inst, nodes));
            return set;
        }
        file_.warnings.push_back(file_.path + ":" + std::to_string(c.line) + ": " + c.reference +
                                 ": no data set " + name + " in its LLN0");
        return std::nullopt;
    }

    Fcda readMember(pugi::xml_node fcda, const std::string& ied, const std::string& ownInst,
                    const IedNodes& nodes) {
        std::string inst = fcda.attribute("ldInst").value();
        if (inst.empty())
            inst = ownInst;
        const std::string ln = lnName(fcda);
        const std::string doName = fcda.attribute("doName").value();
        const std::string daName = fcda.attribute("daName").value();
        Fcda m;
        m.name = ln + "." + doName + (daName.empty() ? "" : "." + daName);
        m.fc = fcda.attribute("fc").value();
        const auto phase = phases_.find({ied, inst, ln});
        if (phase != phases_.end())
            m.phase = phase->second;
        const NodeInfo* node = findNode(nodes, inst, ln);
        const std::vector<LeafAttribute>* leaves =
            node ? templates_.expand(node->lnType, doName, daName, m.fc) : nullptr;
        if (node)
            m.lnDescription = node->description;
        if (!leaves) {
            file_.warnings.push_back(xml_.where(fcda) + m.name + " [" + m.fc +
                                     "] is not in the data type templates");
            return m;
        }
        m.leaves.reserve(leaves->size());
        for (const LeafAttribute& leaf : *leaves)
            m.leaves.push_back({ln + "." + leaf.name, leaf.bType});
        return m;
    }

    static const NodeInfo* findNode(const IedNodes& nodes, const std::string& inst,
                                    const std::string& ln) {
        const auto device = nodes.find(inst);
        if (device == nodes.end())
            return nullptr;
        const auto node = device->second.find(ln);
        return node == device->second.end() ? nullptr : &node->second;
    }

    SclXml xml_;
    TypeTemplates templates_;
    SclFile file_;
    std::map<BlockKey, Address> addresses_;
    std::map<NodeKey, std::string> phases_;
};

} // namespace

SclFile readSclFile(const std::string& path) {
    return FileReader(path).read();
}

} // namespace TavScl
