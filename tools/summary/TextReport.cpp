#include "model/Converters.h"
#include "tools/summary/JsonWriter.h"
#include "tools/summary/Reports.h"

namespace TavInspect {

namespace {

std::string vlanText(const TavIec61850Parser::EthernetPart& e) {
    if (e.vlan && e.vlan->id)
        return std::to_string(*e.vlan->id);
    return "-";
}

std::string lineText(const TavIec61850Parser::EthernetPart& e) {
    if (e.hsr && e.hsr->line)
        return std::string("HSR ") + *e.hsr->line;
    if (e.prp && e.prp->line)
        return std::string("PRP ") + *e.prp->line;
    return "-";
}

std::string identifiers(const StreamRef& s) {
    if (s.sv)
        return "svID " + JsonWriter::escape(s.sv->svId);
    return "goID " + JsonWriter::escape(s.goose->goId) + " gocbRef " +
           JsonWriter::escape(s.goose->gocbRef) + " datSet " + JsonWriter::escape(s.goose->datSet);
}

} // namespace

void writeText(std::ostream& out, const StreamTable& table) {
    for (const auto& s : table.streams()) {
        const auto& e = s.ethernet();
        const int decimals = table.timeDecimals(s);
        out << s.kind() << " src " << e.srcMac << " dst " << s.dstMac() << " vlan " << vlanText(e)
            << " line " << lineText(e) << " appid " << TavNA::Converters::intToHexString(s.appId())
            << ' ' << identifiers(s) << " simulation " << (s.simulation() ? "yes" : "no")
            << " packets " << s.packets() << " first " << formatTime(s.first(), decimals)
            << " last " << formatTime(s.last(), decimals) << '\n';
    }
    for (std::size_t i = 0; i < table.paths().size(); ++i) {
        const auto& f = table.fileStats()[i];
        out << "file " << table.paths()[i] << " format " << f.format << " frames " << f.frames
            << " sv " << f.svFrames << " goose " << f.gooseFrames << " malformed "
            << f.malformedFrames << " other " << f.otherFrames << '\n';
    }
}

} // namespace TavInspect
