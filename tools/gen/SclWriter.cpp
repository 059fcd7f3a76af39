#include "tools/gen/SclWriter.h"

#include "tools/gen/SclNames.h"
#include "tools/gen/SclTemplates.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>

namespace TavGen {

namespace {

constexpr std::uint8_t kVlanPriority = 4; // what the frames' tags carry

// One control block as the configuration states it.
struct Block {
    bool sv = true;
    std::string ldName, cbName, dataSet, id;
    std::uint32_t confRev = 1;
    Mac dst{};
    std::uint16_t appId = 0;
    std::optional<std::uint16_t> vlanId;
    unsigned channels = 0; // SV
    unsigned smpRate = 0;
    bool perPeriod = true;
    unsigned nofAsdu = 1;
    std::vector<GooseEntry> entries; // GOOSE
};

std::string part(const std::string& reference, bool beforeSlash) {
    const auto slash = reference.find('/');
    if (beforeSlash)
        return reference.substr(0, slash);
    const auto dollar = reference.rfind('$');
    return dollar == std::string::npos ? reference : reference.substr(dollar + 1);
}

void disagree(Block& b, const std::vector<std::string>& fields) {
    const auto has = [&](const char* f) {
        return std::find(fields.begin(), fields.end(), f) != fields.end();
    };
    b.confRev += has("confRev") ? 1 : 0;
    b.appId = static_cast<std::uint16_t>(b.appId + (has("appid") ? 1 : 0));
    b.dst[5] ^= has("dst") ? 0x80 : 0;
    if (has("vlan"))
        b.vlanId = b.vlanId ? static_cast<std::uint16_t>((*b.vlanId + 1) % 4096) : 5;
    if (has("datSet"))
        b.dataSet += "cfg";
    if (has("entries") && b.sv)
        ++b.channels;
    if (has("entries") && !b.sv)
        b.entries.push_back(GooseEntry::Boolean);
    b.smpRate *= has("smpRate") ? 2 : 1;
    b.nofAsdu += has("nofASDU") ? 1 : 0;
    if (has("id"))
        b.id += "cfg";
}

Block svBlock(const SvStreamConfig& c, unsigned n) {
    Block b;
    b.ldName = part(c.datSet, true);
    b.cbName = "MSVCB" + hexText(n, 2);
    b.dataSet = part(c.datSet, false);
    b.id = c.svId;
    b.confRev = c.confRev;
    b.dst = c.dst;
    b.appId = c.appId;
    b.vlanId = c.tagging.vlanId;
    b.channels = c.channels;
    const double perPeriod = c.rate / c.signal.frequency;
    b.perPeriod = perPeriod == static_cast<unsigned>(perPeriod);
    b.smpRate = b.perPeriod ? static_cast<unsigned>(perPeriod) : c.rate;
    b.nofAsdu = c.asdus;
    return b;
}

Block gooseBlock(const GooseStreamConfig& c) {
    Block b;
    b.sv = false;
    b.ldName = part(c.gocbRef, true);
    b.cbName = part(c.gocbRef, false);
    b.dataSet = part(c.datSet, false);
    b.id = c.goId;
    b.confRev = c.confRev;
    b.dst = c.dst;
    b.appId = c.appId;
    b.vlanId = c.tagging.vlanId;
    b.entries = c.entries;
    return b;
}

class Writer {
public:
    Writer(const std::string& path, const Scenario& s, const std::vector<std::string>& fields)
        : out_(path) {
        if (!out_)
            throw std::runtime_error("cannot write " + path);
        for (std::size_t n = 0; n < s.sv.size(); ++n)
            svDevices_[part(s.sv[n].datSet, true)].push_back(svBlock(s.sv[n], unsigned(n)));
        for (const auto& g : s.goose)
            goose_.push_back(gooseBlock(g));
        for (auto& [ld, blocks] : svDevices_)
            for (Block& b : blocks)
                disagree(b, fields);
        for (Block& b : goose_)
            disagree(b, fields);
    }

    void write() {
        out_ << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
             << "<SCL xmlns=\"http://www.iec.ch/61850/2003/SCL\" version=\"2007\" revision=\"B\" "
                "release=\"4\">\n"
             << "  <Header id=\"tavna-gen\" nameStructure=\"IEDName\"/>\n";
        writeSubstation();
        writeCommunication();
        writeSvIed();
        for (std::size_t n = 0; n < goose_.size(); ++n)
            writeGooseIed(n);
        writeTemplates(out_, templateNeeds());
        out_ << "</SCL>\n";
        out_.close();
        if (!out_)
            throw std::runtime_error("cannot write the configuration");
    }

private:
    static std::string gooseIed(std::size_t n) { return "TavnaGO" + hexText(unsigned(n), 2); }

    unsigned svNodes(bool current) const {
        unsigned most = 0;
        for (const auto& [ld, blocks] : svDevices_)
            for (const Block& b : blocks)
                for (unsigned k = 0; k < b.channels; ++k)
                    if (svChannelNode(k).current == current)
                        most = std::max(most, svChannelNode(k).instance);
        return most;
    }

    TemplateNeeds templateNeeds() const {
        TemplateNeeds needs;
        for (const Block& b : goose_)
            needs.ggioSizes.insert(static_cast<unsigned>(
                std::count(b.entries.begin(), b.entries.end(), GooseEntry::Boolean)));
        return needs;
    }

    void writeSubstation() {
        const unsigned cts = svNodes(true), vts = svNodes(false);
        if (cts + vts == 0)
            return;
        out_ << "  <Substation name=\"TAVNA\">\n    <VoltageLevel name=\"E1\">\n"
             << "      <Bay name=\"Q1\">\n";
        const std::pair<const char*, unsigned> kinds[] = {{"TCTR", cts}, {"TVTR", vts}};
        for (const auto& [lnClass, count] : kinds) {
            for (unsigned i = 1; i <= count; ++i) {
                out_ << "        <ConductingEquipment name=\"" << lnClass[1] << "T" << i
                     << "\" type=\"" << (lnClass[1] == 'C' ? "CTR" : "VTR") << "\">\n"
                     << "          <SubEquipment name=\"" << phaseOf(i) << "\" phase=\""
                     << phaseOf(i) << "\">\n";
                for (std::size_t d = 0; d < svDevices_.size(); ++d)
                    out_ << "            <LNode iedName=\"TavnaMU\" ldInst=\"MU" << d + 1
                         << "\" lnClass=\"" << lnClass << "\" lnInst=\"" << i << "\"/>\n";
                out_ << "          </SubEquipment>\n        </ConductingEquipment>\n";
            }
        }
        out_ << "      </Bay>\n    </VoltageLevel>\n  </Substation>\n";
    }

    void writeAddress(const char* element, const std::string& ldInst, const Block& b) {
        out_ << "        <" << element << " ldInst=\"" << ldInst << "\" cbName=\"" << b.cbName
             << "\">\n          <Address>\n"
             << "            <P type=\"MAC-Address\">" << sclMac(b.dst) << "</P>\n"
             << "            <P type=\"APPID\">" << hexText(b.appId, 4) << "</P>\n"
             << "            <P type=\"VLAN-ID\">" << hexText(b.vlanId.value_or(0), 3) << "</P>\n"
             << "            <P type=\"VLAN-PRIORITY\">" << unsigned(kVlanPriority) << "</P>\n"
             << "          </Address>\n        </" << element << ">\n";
    }

    void writeCommunication() {
        out_ << "  <Communication>\n    <SubNetwork name=\"ProcessBus\" type=\"8-MMS\">\n";
        if (!svDevices_.empty()) {
            out_ << "      <ConnectedAP iedName=\"TavnaMU\" apName=\"AP1\">\n";
            unsigned d = 0;
            for (const auto& [ld, blocks] : svDevices_) {
                ++d;
                for (const Block& b : blocks)
                    writeAddress("SMV", "MU" + std::to_string(d), b);
            }
            out_ << "      </ConnectedAP>\n";
        }
        for (std::size_t n = 0; n < goose_.size(); ++n) {
            out_ << "      <ConnectedAP iedName=\"" << gooseIed(n) << "\" apName=\"AP1\">\n";
            writeAddress("GSE", "LD0", goose_[n]);
            out_ << "      </ConnectedAP>\n";
        }
        out_ << "    </SubNetwork>\n  </Communication>\n";
    }

    void beginIed(const std::string& name) {
        out_ << "  <IED name=\"" << name << "\" manufacturer=\"TavNA\" type=\"tavna-gen\">\n"
             << "    <AccessPoint name=\"AP1\">\n      <Server>\n"
             << "        <Authentication/>\n";
    }

    void endIed() { out_ << "      </Server>\n    </AccessPoint>\n  </IED>\n"; }

    void writeSvDataSet(const Block& b, const std::string& ldInst) {
        out_ << "            <DataSet name=\"" << b.dataSet << "\">\n";
        for (unsigned k = 0; k < b.channels; ++k) {
            const SvChannelNode node = svChannelNode(k);
            out_ << "              <FCDA ldInst=\"" << ldInst << "\" lnClass=\""
                 << (node.current ? "TCTR" : "TVTR") << "\" lnInst=\"" << node.instance
                 << "\" doName=\"" << (node.current ? "Amp" : "Vol") << "\" fc=\"MX\"/>\n";
        }
        out_ << "            </DataSet>\n";
    }

    void writeSvIed() {
        if (svDevices_.empty())
            return;
        beginIed("TavnaMU");
        unsigned d = 0;
        for (const auto& [ld, blocks] : svDevices_) {
            const std::string inst = "MU" + std::to_string(++d);
            out_ << "        <LDevice inst=\"" << inst << "\" ldName=\"" << ld << "\">\n"
                 << "          <LN0 lnClass=\"LLN0\" inst=\"\" lnType=\"TAVNA_LLN0\">\n";
            std::set<std::string> dataSets;
            for (const Block& b : blocks)
                if (dataSets.insert(b.dataSet).second)
                    writeSvDataSet(b, inst);
            for (const Block& b : blocks)
                out_ << "            <SampledValueControl name=\"" << b.cbName << "\" datSet=\""
                     << b.dataSet << "\" confRev=\"" << b.confRev << "\" smvID=\"" << b.id
                     << "\" multicast=\"true\" smpRate=\"" << b.smpRate << "\" smpMod=\""
                     << (b.perPeriod ? "SmpPerPeriod" : "SmpPerSec") << "\" nofASDU=\"" << b.nofAsdu
                     << "\">\n"
                     << "              <SmvOpts sampleSynchronized=\"true\"/>\n"
                     << "            </SampledValueControl>\n";
            out_ << "          </LN0>\n";
            const std::pair<const char*, unsigned> kinds[] = {{"TCTR", svNodes(true)},
                                                              {"TVTR", svNodes(false)}};
            for (const auto& [lnClass, count] : kinds)
                for (unsigned i = 1; i <= count; ++i)
                    out_ << "          <LN lnClass=\"" << lnClass << "\" inst=\"" << i
                         << "\" lnType=\"TAVNA_" << lnClass << "\" desc=\""
                         << (lnClass[1] == 'C' ? "Current " : "Voltage ") << phaseOf(i) << "\"/>\n";
            out_ << "        </LDevice>\n";
        }
        endIed();
    }

    void writeGooseIed(std::size_t n) {
        const Block& b = goose_[n];
        const auto booleans = static_cast<unsigned>(
            std::count(b.entries.begin(), b.entries.end(), GooseEntry::Boolean));
        beginIed(gooseIed(n));
        out_ << "        <LDevice inst=\"LD0\" ldName=\"" << b.ldName << "\">\n"
             << "          <LN0 lnClass=\"LLN0\" inst=\"\" lnType=\"TAVNA_LLN0\">\n"
             << "            <DataSet name=\"" << b.dataSet << "\">\n";
        unsigned ind = 0, pos = 0;
        for (GooseEntry e : b.entries) {
            if (e == GooseEntry::Boolean)
                out_ << "              <FCDA ldInst=\"LD0\" lnClass=\"GGIO\" lnInst=\"1\" "
                        "doName=\"Ind"
                     << ++ind << "\" daName=\"stVal\" fc=\"ST\"/>\n";
            else
                out_ << "              <FCDA ldInst=\"LD0\" lnClass=\"XCBR\" lnInst=\"" << ++pos
                     << "\" doName=\"Pos\" daName=\"stVal\" fc=\"ST\"/>\n";
        }
        out_ << "            </DataSet>\n"
             << "            <GSEControl name=\"" << b.cbName << "\" datSet=\"" << b.dataSet
             << "\" confRev=\"" << b.confRev << "\" appID=\"" << b.id << "\" type=\"GOOSE\"/>\n"
             << "          </LN0>\n"
             << "          <LN lnClass=\"GGIO\" inst=\"1\" lnType=\"TAVNA_GGIO_" << booleans
             << "\" desc=\"Binary signals\"/>\n";
        for (unsigned i = 1; i <= pos; ++i)
            out_ << "          <LN lnClass=\"XCBR\" inst=\"" << i
                 << "\" lnType=\"TAVNA_XCBR\" desc=\"Circuit breaker " << i << "\"/>\n";
        out_ << "        </LDevice>\n";
        endIed();
    }

    std::ofstream out_;
    std::map<std::string, std::vector<Block>> svDevices_; // by logical device name
    std::vector<Block> goose_;
};

} // namespace

const std::vector<std::string>& sclMismatchFields() {
    static const std::vector<std::string> fields{"confRev", "appid",   "dst",     "vlan", "datSet",
                                                 "entries", "smpRate", "nofASDU", "id"};
    return fields;
}

void writeScl(const std::string& path, const Scenario& scenario,
              const std::vector<std::string>& mismatches) {
    Writer(path, scenario, mismatches).write();
}

} // namespace TavGen
