// SCL files of either edition read into control blocks: addresses, identities,
// data sets expanded through the type templates, descriptions and phases; and
// files that are not SCL refused with the file and the line.
#include "scl/SclReader.h"
#include "scl/SclError.h"
#include "tests/support/TestCaptures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace TavScl;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string writeText(const std::string& name, const std::string& text) {
    const std::string path = TavTest::tempDir() + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

const ControlBlock& block(const SclFile& f, const std::string& reference) {
    for (const auto& c : f.controls)
        if (c.reference == reference)
            return c;
    throw std::runtime_error("no control block " + reference);
}

std::vector<std::string> leafNames(const Fcda& m) {
    std::vector<std::string> names;
    for (const auto& leaf : m.leaves)
        names.push_back(leaf.name);
    return names;
}

// A merging unit of the 2007 edition: a data set of whole measured values
// (the configuration attribute left out by its functional constraint) and
// one of single attributes, its transformers' phases in the substation.
const char* kMergingUnit = R"(<?xml version="1.0" encoding="UTF-8"?>
<SCL xmlns="http://www.iec.ch/61850/2003/SCL" version="2007" revision="B">
  <Header id="mu"/>
  <Substation name="S"><VoltageLevel name="V"><Bay name="B">
    <ConductingEquipment name="CT" type="CTR">
      <SubEquipment name="L1" phase="A"><LNode iedName="MU1" ldInst="MU" lnClass="TCTR" lnInst="1"/></SubEquipment>
      <SubEquipment name="L2" phase="B"><LNode iedName="MU1" ldInst="MU" lnClass="TCTR" lnInst="2"/></SubEquipment>
    </ConductingEquipment>
  </Bay></VoltageLevel></Substation>
  <Communication><SubNetwork name="PB">
    <ConnectedAP iedName="MU1" apName="P1">
      <SMV ldInst="MU" cbName="smv1"><Address>
        <P type="MAC-Address">01-0C-CD-04-00-1A</P><P type="APPID">4001</P>
        <P type="VLAN-ID">00A</P><P type="VLAN-PRIORITY">4</P>
      </Address></SMV>
    </ConnectedAP>
  </SubNetwork></Communication>
  <IED name="MU1">
    <AccessPoint name="P1"><Server>
      <LDevice inst="MU">
        <LN0 lnClass="LLN0" inst="" lnType="LLN0T">
          <DataSet name="Phs">
            <FCDA ldInst="MU" lnClass="TCTR" lnInst="1" doName="Amp" fc="MX"/>
            <FCDA ldInst="MU" lnClass="TCTR" lnInst="2" doName="Amp" fc="MX"/>
            <FCDA ldInst="MU" prefix="I" lnClass="TVTR" lnInst="1" doName="Vol" daName="instMag.i" fc="MX"/>
            <FCDA ldInst="MU" prefix="I" lnClass="TVTR" lnInst="1" doName="Vol" daName="q" fc="MX"/>
          </DataSet>
          <SampledValueControl name="smv1" datSet="Phs" confRev="3" smvID="MU1SV" smpRate="80" nofASDU="2"/>
          <SampledValueControl name="smv2" datSet="Phs" smvID="MU1SVb" smpRate="4800" smpMod="SmpPerSec" multicast="false"/>
        </LN0>
        <LN lnClass="TCTR" inst="1" lnType="TCTRT" desc="Phase A current"/>
        <LN lnClass="TCTR" inst="2" lnType="TCTRT"/>
        <LN prefix="I" lnClass="TVTR" inst="1" lnType="TVTRT" desc="Bus voltage"/>
      </LDevice>
    </Server></AccessPoint>
  </IED>
  <DataTypeTemplates>
    <LNodeType id="LLN0T" lnClass="LLN0"/>
    <LNodeType id="TCTRT" lnClass="TCTR"><DO name="Amp" type="SAVT"/></LNodeType>
    <LNodeType id="TVTRT" lnClass="TVTR"><DO name="Vol" type="SAVT"/></LNodeType>
    <DOType id="SAVT" cdc="SAV">
      <DA name="instMag" bType="Struct" type="AV" fc="MX"/>
      <DA name="q" bType="Quality" fc="MX"/>
      <DA name="sVC" bType="Struct" type="SVC" fc="CF"/>
    </DOType>
    <DAType id="AV"><BDA name="i" bType="INT32"/></DAType>
    <DAType id="SVC"><BDA name="scaleFactor" bType="FLOAT32"/></DAType>
  </DataTypeTemplates>
</SCL>
)";

TEST(SclReader, MergingUnitBlockWithItsAddressRatesAndExpandedDataSet) {
    const SclFile f = readSclFile(writeText("mu.scd", kMergingUnit));
    EXPECT_EQ(f.version, "2007");
    ASSERT_EQ(f.ieds.size(), 1u);
    ASSERT_EQ(f.controls.size(), 2u);
    EXPECT_TRUE(f.warnings.empty());

    const ControlBlock& c = block(f, "MU1MU/LLN0$MS$smv1");
    EXPECT_EQ(c.kind, ControlKind::Sv);
    EXPECT_EQ(c.id, "MU1SV");
    EXPECT_EQ(c.dataSetReference, "MU1MU/LLN0$Phs");
    EXPECT_EQ(c.confRev, 3u);
    EXPECT_EQ(c.smpRate, 80u);
    EXPECT_EQ(c.smpMod, SampleMode::PerPeriod);
    EXPECT_EQ(c.nofAsdu, 2u);
    ASSERT_TRUE(c.address);
    EXPECT_EQ(c.address->mac, "01:0c:cd:04:00:1a");
    EXPECT_EQ(c.address->appId, 0x4001);
    EXPECT_EQ(c.address->vlanId, 10);
    EXPECT_EQ(c.address->vlanPriority, 4);
    EXPECT_EQ(c.line, 28);

    // A whole measured value goes as its magnitude and quality; attributes
    // given one by one name the channel by the attribute.
    const auto& members = c.dataSet->members;
    ASSERT_EQ(members.size(), 4u);
    EXPECT_THAT(leafNames(members[0]), ElementsAre("TCTR1.Amp.instMag.i", "TCTR1.Amp.q"));
    EXPECT_THAT(c.channelNames(), ElementsAre("TCTR1.Amp", "TCTR2.Amp", "ITVTR1.Vol.instMag.i"));
    EXPECT_THAT(c.channelDescriptions(), ElementsAre("Phase A current", "", "Bus voltage"));
    EXPECT_EQ(members[0].phase, "A");
    EXPECT_EQ(members[1].phase, "B");
    EXPECT_EQ(members[2].phase, "");

    const ControlBlock& unicast = block(f, "MU1MU/LLN0$US$smv2");
    EXPECT_EQ(unicast.smpMod, SampleMode::PerSecond);
    EXPECT_FALSE(unicast.confRev);
    EXPECT_FALSE(unicast.address);
}

// The 2003 edition under a prefix, with a private extension beside every
// part: a foreign IED, foreign attributes and an element the reader does not know.
const char* kProtectionRelay = R"(<?xml version="1.0"?>
<scl:SCL xmlns:scl="http://www.iec.ch/61850/2003/SCL" xmlns:ext="urn:vendor:ext">
  <scl:Private type="ext:notes">whatever</scl:Private>
  <ext:IED name="Ghost"><ext:GSEControl name="x"/></ext:IED>
  <scl:Communication><scl:SubNetwork name="SB">
    <scl:ConnectedAP iedName="P1" apName="S1">
      <scl:GSE ldInst="PROT" cbName="trip"><scl:Address>
        <scl:P type="MAC-Address">01:0c:cd:01:00:05</scl:P><scl:P type="APPID">0x10</scl:P>
      </scl:Address><scl:MinTime unit="s">4</scl:MinTime></scl:GSE>
    </scl:ConnectedAP>
  </scl:SubNetwork></scl:Communication>
  <scl:IED name="P1" ext:colour="red">
    <scl:AccessPoint name="S1"><scl:Server>
      <scl:LDevice inst="PROT">
        <scl:LN0 lnClass="LLN0" inst="" lnType="L0">
          <scl:DataSet name="Trips">
            <scl:FCDA ldInst="CTRL" lnClass="XCBR" lnInst="1" doName="Pos" fc="ST"/>
            <scl:FCDA ldInst="PROT" lnClass="PTOC" lnInst="1" doName="Op" daName="general" fc="ST"/>
            <scl:FCDA ldInst="PROT" lnClass="MMXU" lnInst="1" doName="A.phsA" fc="MX"/>
            <scl:FCDA ldInst="PROT" lnClass="PDIS" lnInst="9" doName="Op" fc="ST"/>
          </scl:DataSet>
          <scl:GSEControl name="trip" datSet="Trips" confRev="1"/>
          <ext:Tuning gain="2"/>
        </scl:LN0>
        <scl:LN lnClass="PTOC" inst="1" lnType="PTOCT" desc="Overcurrent"/>
        <scl:LN lnClass="MMXU" inst="1" lnType="MMXUT"/>
      </scl:LDevice>
      <scl:LDevice inst="CTRL">
        <scl:LN0 lnClass="LLN0" inst="" lnType="L0"/>
        <scl:LN lnClass="XCBR" inst="1" lnType="XCBRT" desc="Breaker"/>
      </scl:LDevice>
    </scl:Server></scl:AccessPoint>
  </scl:IED>
  <scl:DataTypeTemplates>
    <scl:LNodeType id="L0" lnClass="LLN0"/>
    <scl:LNodeType id="XCBRT" lnClass="XCBR"><scl:DO name="Pos" type="DPC"/></scl:LNodeType>
    <scl:LNodeType id="PTOCT" lnClass="PTOC"><scl:DO name="Op" type="ACT"/></scl:LNodeType>
    <scl:LNodeType id="MMXUT" lnClass="MMXU"><scl:DO name="A" type="WYE"/></scl:LNodeType>
    <scl:DOType id="DPC" cdc="DPC">
      <scl:DA name="origin" bType="Struct" type="Orig" fc="ST"/>
      <scl:DA name="stVal" bType="Dbpos" fc="ST"/>
      <scl:DA name="q" bType="Quality" fc="ST"/>
      <scl:DA name="ctlModel" bType="Enum" fc="CF"/>
    </scl:DOType>
    <scl:DOType id="ACT" cdc="ACT"><scl:DA name="general" bType="BOOLEAN" fc="ST"/></scl:DOType>
    <scl:DOType id="WYE" cdc="WYE">
      <scl:SDO name="phsA" type="CMV"/><scl:SDO name="phsB" type="CMV"/>
    </scl:DOType>
    <scl:DOType id="CMV" cdc="CMV">
      <scl:DA name="cVal" bType="Struct" type="Vector" fc="MX"/>
      <scl:DA name="q" bType="Quality" fc="MX"/>
    </scl:DOType>
    <scl:DAType id="Orig">
      <scl:BDA name="orCat" bType="Enum"/><scl:BDA name="orIdent" bType="Octet64"/>
    </scl:DAType>
    <scl:DAType id="Vector">
      <scl:BDA name="mag" bType="Struct" type="AV"/><scl:BDA name="ang" bType="Struct" type="AV"/>
    </scl:DAType>
    <scl:DAType id="AV"><scl:BDA name="f" bType="FLOAT32"/></scl:DAType>
  </scl:DataTypeTemplates>
</scl:SCL>
)";

TEST(SclReader, GooseOfNestedStructuresUnderAPrefixWithExtensionsIgnored) {
    const SclFile f = readSclFile(writeText("relay.icd", kProtectionRelay));
    EXPECT_EQ(f.version, "2003");
    ASSERT_EQ(f.ieds.size(), 1u);
    ASSERT_EQ(f.controls.size(), 1u);
    const ControlBlock& c = f.controls[0];
    EXPECT_EQ(c.kind, ControlKind::Goose);
    EXPECT_EQ(c.reference, "P1PROT/LLN0$GO$trip");
    EXPECT_EQ(c.id, c.reference) << "goID defaults to the control block reference";
    EXPECT_EQ(c.address->mac, "01:0c:cd:01:00:05");
    EXPECT_EQ(c.address->appId, 0x10);

    // A member from the other logical device, a struct within the object,
    // sub-objects with vectors of structs: every leaf in the templates' order.
    const auto& m = c.dataSet->members;
    ASSERT_EQ(m.size(), 4u);
    EXPECT_THAT(leafNames(m[0]), ElementsAre("XCBR1.Pos.origin.orCat", "XCBR1.Pos.origin.orIdent",
                                             "XCBR1.Pos.stVal", "XCBR1.Pos.q"));
    EXPECT_EQ(m[0].lnDescription, "Breaker");
    EXPECT_THAT(leafNames(m[1]), ElementsAre("PTOC1.Op.general"));
    EXPECT_THAT(leafNames(m[2]), ElementsAre("MMXU1.A.phsA.cVal.mag.f", "MMXU1.A.phsA.cVal.ang.f",
                                             "MMXU1.A.phsA.q"));
    // GOOSE sends each member as one entry, however deep.
    EXPECT_THAT(c.channelNames(),
                ElementsAre("XCBR1.Pos", "PTOC1.Op.general", "MMXU1.A.phsA", "PDIS9.Op"));

    // The member the templates do not know stays, named, and is told with its line.
    EXPECT_TRUE(m[3].leaves.empty());
    ASSERT_EQ(f.warnings.size(), 1u);
    EXPECT_THAT(f.warnings[0], HasSubstr("relay.icd:20: PDIS9.Op [ST]"));
}

// Types that contain themselves, as a broken or hostile file may declare them,
// end the expansion instead of the program.
TEST(SclReader, TypesThatContainThemselvesEndTheExpansion) {
    const SclFile f = readSclFile(writeText("loop.cid", R"(<SCL>
  <IED name="L"><AccessPoint name="A"><Server><LDevice inst="D">
    <LN0 lnClass="LLN0" inst="" lnType="N">
      <DataSet name="S">
        <FCDA lnClass="LLN0" doName="Loop" fc="ST"/>
        <FCDA lnClass="LLN0" doName="Deep" fc="ST"/>
      </DataSet>
      <GSEControl name="g" datSet="S" appID="loops"/>
    </LN0>
  </LDevice></Server></AccessPoint></IED>
  <DataTypeTemplates>
    <LNodeType id="N" lnClass="LLN0"><DO name="Loop" type="O"/><DO name="Deep" type="P"/></LNodeType>
    <DOType id="O"><SDO name="again" type="O"/><DA name="v" bType="BOOLEAN" fc="ST"/></DOType>
    <DOType id="P"><DA name="s" bType="Struct" type="T" fc="ST"/></DOType>
    <DAType id="T"><BDA name="b" bType="INT8"/><BDA name="self" bType="Struct" type="T"/></DAType>
  </DataTypeTemplates>
</SCL>)"));
    ASSERT_EQ(f.controls.size(), 1u);
    const auto& m = f.controls[0].dataSet->members;
    ASSERT_EQ(m.size(), 2u);
    EXPECT_EQ(m[0].leaves.back().name, "LLN0.Loop.v");
    EXPECT_GT(m[1].leaves.size(), 1u);
    EXPECT_LT(m[1].leaves.size(), 100u);
}

struct BadFile {
    const char* name;
    std::string text;
    int line;
    const char* reason;
};

class SclReaderRefuses : public ::testing::TestWithParam<BadFile> {};

TEST_P(SclReaderRefuses, NamingTheFileAndTheLine) {
    const BadFile& b = GetParam();
    const std::string path = writeText(b.name, b.text);
    try {
        readSclFile(path);
        FAIL() << "read without complaint";
    } catch (const SclError& e) {
        EXPECT_EQ(e.path(), path);
        EXPECT_EQ(e.line(), b.line);
        EXPECT_THAT(e.what(), HasSubstr(path + (b.line ? ":" + std::to_string(b.line) : "")));
        EXPECT_THAT(e.reason(), HasSubstr(b.reason));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, SclReaderRefuses,
    ::testing::Values(
        BadFile{"cut.scd",
                std::string(kMergingUnit).substr(0, std::string(kMergingUnit).find("MU1SV")), 28,
                "not well-formed"},
        BadFile{"tags.scd", "<SCL>\n  <IED name=\"a\">\n  </LDevice>\n</SCL>\n", 3,
                "not well-formed"},
        BadFile{"page.scd", "<?xml version=\"1.0\"?>\n\n<html><body/></html>\n", 3,
                "not an SCL file"},
        BadFile{"empty.scd", "", 0, "empty"}),
    [](const auto& info) {
        const std::string name = info.param.name;
        return name.substr(0, name.find('.'));
    });

TEST(SclReader, AMissingFileIsNamed) {
    const std::string path = TavTest::tempDir() + "/nowhere.scd";
    EXPECT_THROW(
        {
            try {
                readSclFile(path);
            } catch (const SclError& e) {
                EXPECT_THAT(e.what(), HasSubstr(path + ": cannot open"));
                throw;
            }
        },
        SclError);
}

} // namespace
