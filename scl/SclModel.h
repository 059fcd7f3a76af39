#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TavScl {

enum class ControlKind { Sv, Goose };

const char* kindName(ControlKind kind); // "SV" or "GOOSE"

// One attribute as it goes on the wire: a leaf of the data type templates.
struct LeafAttribute {
    std::string name;  // "TCTR1.Amp.instMag.i"
    std::string bType; // "INT32", "Quality", "BOOLEAN" ...
};

// One member of a data set, with what it expands to.
struct Fcda {
    std::string name; // "TCTR1.Amp" or "GGIO1.SPCSO1.stVal": LN, DO and DA as given
    std::string fc;
    std::string lnDescription; // the logical node's desc, when given
    std::string phase;         // the instrument transformer's phase in the substation section
    // Empty when the templates do not resolve the member.
    std::vector<LeafAttribute> leaves;
};

struct DataSet {
    std::string name;
    std::vector<Fcda> members;
};

// The Communication section's address of a control block.
struct Address {
    std::string mac; // "01:0c:cd:04:00:01", lower case
    std::optional<std::uint16_t> appId;
    std::optional<std::uint16_t> vlanId;
    std::optional<std::uint8_t> vlanPriority;
};

enum class SampleMode { PerPeriod, PerSecond, SecondsPerSample };

struct ControlBlock {
    ControlKind kind = ControlKind::Sv;
    std::string ied;
    std::string ldName; // the logical device's name on the wire
    std::string name;
    std::string reference;        // "IEDLD/LLN0$GO$gcb1", "IEDLD/LLN0$MS$smv1"
    std::string id;               // svID, or goID (the reference when not given)
    std::string dataSetReference; // "IEDLD/LLN0$DS1"; empty when no data set is named
    std::optional<std::uint32_t> confRev;
    std::optional<Address> address;
    std::optional<std::uint32_t> smpRate;
    SampleMode smpMod = SampleMode::PerPeriod;
    std::optional<std::uint32_t> nofAsdu;
    std::optional<DataSet> dataSet; // absent when the named data set is not in the file
    std::string file;
    int line = 0;

    // What a stream of this block carries per sample (SV: the values, each
    // with its quality) or per frame (GOOSE: the data set's members), named.
    std::vector<std::string> channelNames() const;
    // The logical node's description of each of those channels.
    std::vector<std::string> channelDescriptions() const;
};

struct Ied {
    std::string name;
    std::string description;
    std::string manufacturer;
    std::string type;
};

// What one SCL file configures.
struct SclFile {
    std::string path;
    std::string version; // "2003", "2007" ...
    std::string revision;
    std::vector<Ied> ieds;
    std::vector<ControlBlock> controls;
    // "path:line: reason" for what was skipped: references the file does not resolve.
    std::vector<std::string> warnings;
};

} // namespace TavScl
