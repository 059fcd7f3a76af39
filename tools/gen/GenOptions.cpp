#include "tools/gen/GenOptions.h"

#include "tools/gen/CaptureVariants.h"
#include "tools/gen/SclWriter.h"
#include "tools/gen/SharedPublisher.h"
#include "tools/gen/SignalOptions.h"
#include "tools/gen/StreamNaming.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

namespace TavGen {

namespace {

constexpr unsigned kMaxStreams = 256;
// Far beyond any real data set, for crafted wide streams: as many values as
// an SV APDU's 16-bit length allows, and GOOSE data sets of that scale.
constexpr unsigned kMaxChannels = 8000;
constexpr unsigned kMaxGooseEntries = 16000;

// The options as given, before they become stream configurations.
struct RawOptions {
    std::string format = "pcap";
    bool bigEndian = false;
    std::uint64_t startNs = 1'700'000'000ull * 1'000'000'000ull;
    std::uint64_t durationNs = 1'000'000'000ull;
    unsigned sv = 0;
    unsigned rate = 4000;
    unsigned asdus = 1;
    unsigned channels = 8;
    SvSignal signal; // its peaks and frequency, and the content given for the measurements
    Tagging tagging;
    unsigned goose = 0;
    unsigned booleans = 4, bitStrings = 0;
    std::vector<std::uint64_t> changesNs;
    bool simulation = false;
    bool unsynchronised = false; // smpSynch 0 in every SV stream
    std::uint64_t other = 0;
    std::vector<Fault> svFaults, gooseFaults;
    bool lanPairs = false;
    CaptureVariants variants;
    std::optional<std::uint64_t> spikeNs; // after the SV streams' start
    std::uint64_t svStartNs = 0;          // after the capture's start
    unsigned bursts = 1;
    std::vector<ArrivalDelay> delays;
    std::uint64_t staggerNs = 0; // SV stream n arrives n times this late
    SharedPublisher sharedPublisher;
};

unsigned parseCount(const std::string& option, const std::string& text, unsigned low,
                    unsigned high) {
    unsigned value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || value < low || value > high)
        throw UsageError(option + " takes a whole number from " + std::to_string(low) + " to " +
                         std::to_string(high) + ", not '" + text + "'");
    return value;
}

double parsePositive(const std::string& option, const std::string& text) {
    try {
        std::size_t used = 0;
        const double value = std::stod(text, &used);
        if (used == text.size() && value >= 0)
            return value;
    } catch (const std::exception&) {
    }
    throw UsageError(option + " takes a non-negative number, not '" + text + "'");
}

char parseLine(const std::string& option, const std::string& text) {
    if (text == "A" || text == "B")
        return text[0];
    throw UsageError(option + " takes A or B, not '" + text + "'");
}

Container parseContainer(const std::string& text) {
    static const std::map<std::string, Container> names{{"pcap", Container::Pcap},
                                                        {"pcap-ns", Container::PcapNs},
                                                        {"pcapng", Container::Pcapng},
                                                        {"pcapng-ns", Container::PcapngNs}};
    const auto it = names.find(text);
    if (it == names.end())
        throw UsageError("--format takes pcap, pcap-ns, pcapng or pcapng-ns, not '" + text + "'");
    return it->second;
}

std::uint64_t parseTime(const std::string& option, const std::string& text) {
    try {
        return parseSeconds(text);
    } catch (const UsageError&) {
        throw UsageError(option + " takes seconds, not '" + text + "'");
    }
}

// Applies one option that takes a value; an unknown name is a usage error.
void applyValue(RawOptions& o, const std::string& name, const std::string& v) {
    if (applyVariantValue(o.variants, name, v) || applySignalValue(o.signal, name, v))
        return;
    if (name == "--format")
        o.format = v;
    else if (name == "--start")
        o.startNs = parseTime(name, v);
    else if (name == "--duration")
        o.durationNs = parseTime(name, v);
    else if (name == "--sv")
        o.sv = parseCount(name, v, 0, kMaxStreams);
    else if (name == "--rate")
        o.rate = parseCount(name, v, 1, 14400);
    else if (name == "--asdus")
        o.asdus = parseCount(name, v, 1, 8);
    else if (name == "--channels")
        o.channels = parseCount(name, v, 1, kMaxChannels);
    else if (name == "--current")
        o.signal.currentPeak = parsePositive(name, v);
    else if (name == "--voltage")
        o.signal.voltagePeak = parsePositive(name, v);
    else if (name == "--frequency")
        o.signal.frequency = parsePositive(name, v);
    else if (name == "--vlan")
        o.tagging.vlanId = static_cast<std::uint16_t>(parseCount(name, v, 0, 4095));
    else if (name == "--hsr")
        o.tagging.hsrLine = parseLine(name, v);
    else if (name == "--prp")
        o.tagging.prpLine = parseLine(name, v);
    else if (name == "--goose")
        o.goose = parseCount(name, v, 0, kMaxStreams);
    else if (name == "--bools")
        o.booleans = parseCount(name, v, 0, kMaxGooseEntries);
    else if (name == "--bitstrings")
        o.bitStrings = parseCount(name, v, 0, 1000);
    else if (name == "--change")
        o.changesNs.push_back(parseTime(name, v));
    else if (name == "--sv-fault")
        o.svFaults.push_back(parseFault(v));
    else if (name == "--goose-fault")
        o.gooseFaults.push_back(parseFault(v));
    else if (name == "--spike")
        o.spikeNs = parseTime(name, v);
    else if (name == "--sv-start")
        o.svStartNs = parseTime(name, v);
    else if (name == "--bursts")
        o.bursts = parseCount(name, v, 1, 64);
    else if (name == "--delay")
        o.delays.push_back(parseDelay(v));
    else if (name == "--stagger")
        o.staggerNs = parseTime(name, v);
    else if (name == "--other")
        o.other = parseCount(name, v, 0, 100'000'000);
    else
        throw UsageError("unknown option " + name);
}

Scenario toScenario(const RawOptions& o) {
    if (o.rate != 4000 && o.rate != 4800 && o.rate != 14400)
        throw UsageError("--rate takes 4000, 4800 or 14400");
    // Bounds that keep every time stamp inside 32-bit seconds and the frame
    // arithmetic inside 64 bits.
    constexpr std::uint64_t kMaxDurationNs = 1'000'000ull * 1'000'000'000ull;
    if (o.durationNs > kMaxDurationNs)
        throw UsageError("--duration is limited to 1000000 s");
    if ((o.startNs + o.durationNs) / 1'000'000'000ull > 0xFFFFFFFFull)
        throw UsageError("--start plus --duration ends beyond the year 2106");
    Scenario s;
    s.container = parseContainer(o.format);
    s.bigEndian = o.bigEndian;
    s.startNs = o.startNs;
    s.durationNs = o.durationNs;
    s.otherFrames = o.other;
    s.lanPairs = o.lanPairs;
    s.bursts = o.bursts;
    Tagging tagging = o.tagging;
    if (o.lanPairs)
        tagging.prpLine = 'A';
    for (unsigned n = 0; n < o.sv; ++n) {
        SvStreamConfig c = namedSvStream(n);
        c.rate = o.rate;
        c.asdus = o.asdus;
        c.channels = o.channels;
        c.simulation = o.simulation;
        c.tagging = tagging;
        c.faults = o.svFaults;
        if (o.unsynchronised)
            c.smpSynch = 0;
        c.signal = o.signal;
        if (o.spikeNs)
            c.signal.spikeAtSeconds = static_cast<double>(*o.spikeNs) / 1e9;
        c.startOffsetNs = o.svStartNs;
        c.delays = o.delays;
        if (o.staggerNs > 0 && n > 0)
            c.delays.push_back({0, ~0ull, n * o.staggerNs});
        s.sv.push_back(c);
    }
    std::vector<std::uint64_t> changes = o.changesNs;
    std::sort(changes.begin(), changes.end());
    for (unsigned n = 0; n < o.goose; ++n) {
        GooseStreamConfig c = namedGooseStream(n);
        c.simulation = o.simulation;
        c.tagging = tagging;
        c.faults = o.gooseFaults;
        c.entries = alternatingEntries(o.booleans, o.bitStrings);
        c.initial.assign(c.entries.size(), 0);
        const std::vector<std::uint8_t>* state = &c.initial;
        for (std::uint64_t at : changes) {
            c.changes.push_back({at, nextState(c.entries, *state)});
            state = &c.changes.back().values;
        }
        s.goose.push_back(std::move(c));
    }
    applyVariants(o.variants, s);
    applySharedPublisher(o.sharedPublisher, s);
    return s;
}

std::string sclMismatch(const std::string& field) {
    const auto& fields = sclMismatchFields();
    if (std::find(fields.begin(), fields.end(), field) != fields.end())
        return field;
    std::string known;
    for (const auto& f : fields)
        known += (known.empty() ? "" : ", ") + f;
    throw UsageError("--scl-mismatch takes one of " + known + ", not '" + field + "'");
}

} // namespace

std::uint64_t parseSeconds(const std::string& text) {
    const auto dot = text.find('.');
    const std::string whole = text.substr(0, dot);
    std::string fraction = dot == std::string::npos ? "" : text.substr(dot + 1);
    const auto digitsOnly = [](const std::string& s) {
        return std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
    };
    if ((whole.empty() && fraction.empty()) || !digitsOnly(whole) || !digitsOnly(fraction) ||
        whole.size() > 10)
        throw UsageError("not a time in seconds: '" + text + "'");
    fraction = fraction.substr(0, 9);
    fraction.resize(9, '0');
    const std::uint64_t seconds = whole.empty() ? 0 : std::stoull(whole);
    if (seconds > 0xFFFFFFFFull)
        throw UsageError("time beyond the year 2106: '" + text + "'");
    return seconds * 1'000'000'000ull + std::stoull(fraction);
}

GenRequest parseArguments(const std::vector<std::string>& args) {
    GenRequest request;
    RawOptions raw;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "-h" || a == "--help") {
            request.help = true;
            return request;
        }
        if (a == "--big-endian") {
            raw.bigEndian = true;
        } else if (a == "--simulation") {
            raw.simulation = true;
        } else if (a == "--prp-pairs") {
            raw.lanPairs = true;
        } else if (a == "--unsynchronised") {
            raw.unsynchronised = true;
        } else if (applyVariantFlag(raw.variants, a) ||
                   applySharedPublisherFlag(raw.sharedPublisher, a)) {
            // taken by the call
        } else if (a.rfind("--", 0) == 0) {
            if (i + 1 >= args.size())
                throw UsageError(a + " needs a value");
            if (a == "--demo")
                request.demoDir = args[++i];
            else if (a == "--scl")
                request.sclOut = args[++i];
            else if (a == "--scl-mismatch")
                request.sclMismatches.push_back(sclMismatch(args[++i]));
            else
                applyValue(raw, a, args[++i]);
        } else if (request.out.empty()) {
            request.out = a;
        } else {
            throw UsageError("more than one output file: " + a);
        }
    }
    if (request.demoDir.empty() && request.out.empty())
        throw UsageError("no output file given");
    if (!request.sclMismatches.empty() && request.sclOut.empty())
        throw UsageError("--scl-mismatch needs --scl");
    if (!request.demoDir.empty() && !request.out.empty())
        throw UsageError("--demo writes into a folder and takes no output file");
    request.scenario = toScenario(raw);
    return request;
}

const char* usageText() {
    return R"(usage: tavna-gen OUT [options]      write one capture file to OUT
       tavna-gen --demo DIR           write the bundled demo captures into DIR

  --format pcap|pcap-ns|pcapng|pcapng-ns   container and time resolution [pcap]
  --big-endian                             container fields big-endian [little]
  --start SEC                              time of the first frame [1700000000]
  --duration SEC                           frames in [start, start+duration) [1]
  --sv N                                   SV streams [0]
  --rate 4000|4800|14400                   samples per second [4000]
  --asdus K                                ASDUs per frame, 1..8 [1]
  --channels C                             values per ASDU, 1..8000 [8]
  --current A --voltage V --frequency F    peak amplitudes and frequency [100 10000 50]
  --harmonic N:PCT                         (repeatable) current harmonic N at PCT %
  --phase-angles A,B,C                     phase angles in degrees [0,-120,120]
  --phase-amplitudes A,B,C                 amplitude factor of each phase [1,1,1]
  --current-lag DEG                        currents lag their voltages by DEG [0]
  --noise R                                Gaussian noise, RMS R x peak [0]
  --spike T                                one sample T s after the SV start at 3 x peak
  --sv-start T                             SV streams begin T s after the capture's start
  --bursts N                               frames handed over N at a time on one time
                                           stamp, as a capturing card does [1]
  --delay T@SEC[xCOUNT]                    (repeatable) SV frames sent from SEC on (COUNT
                                           of them [1]) arrive T s late
  --stagger T                              SV stream n arrives n x T s late throughout
  --vlan ID --hsr A|B --prp A|B            tagging of SV and GOOSE frames [none]
  --goose N                                GOOSE streams [0]
  --bools B --bitstrings S                 entries of each GOOSE data set [4 0],
                                           B up to 16000
  --change T                               (repeatable) state change T s after start
  --simulation                             simulation flag in SV and GOOSE
  --unsynchronised                         smpSynch 0 in SV (not synchronised)
  --other N                                N IPv4 frames spread over the duration [0]
  --prp-pairs                              every frame on LAN A and again on LAN B
  --seqdata-bytes N                        seqData of N bytes in every ASDU [8 x C]
  --distinct-svids                         ASDU k > 0 of a frame carries svID/k and the
                                           sample's values times k + 1, all ASDUs the
                                           same sample: a frame per sample
  --empty-integer                          a GOOSE entry: integer of no octets
  --declared-entries N                     numDatSetEntries sent [the entries]
  --vlan-dei                               DEI bit set in the VLAN tag
  --link ethernet|sll|sll2                 link layer: Linux cooked v1, v2 [ethernet]
  --gzip                                   write the capture gzip-compressed
  --shared-publisher                       every SV stream from one port: the first
                                           one's MACs, APPID and data set, own svID
  --scl OUT.scd                            also write the substation configuration
                                           (SCL) of the streams written
  --scl-mismatch FIELD                     (repeatable) every control block of that
                                           configuration differs from the capture
                                           in FIELD: confRev, appid, dst, vlan,
                                           datSet, entries, smpRate, nofASDU, id
  --sv-fault F --goose-fault F             (repeatable) a fault in every SV or GOOSE
                                           stream: KIND[:VALUE]@SEC[xCOUNT] with KIND
                                           drop, repeat, reorder, pause:SEC, lose-a,
                                           lose-b, synch:V, quality:WORD, stnum-back

Frame times are truncated to the container's resolution. GOOSE frames go out at
the start and at every change, then 2, 4, 8 ... ms apart, the interval doubling
up to 1000 ms.
)";
}

} // namespace TavGen
