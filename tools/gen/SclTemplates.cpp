#include "tools/gen/SclTemplates.h"

namespace TavGen {

namespace {

const char* kFixedTypes = R"(    <LNodeType id="TAVNA_LLN0" lnClass="LLN0">
      <DO name="Beh" type="TAVNA_INS"/>
    </LNodeType>
    <LNodeType id="TAVNA_TCTR" lnClass="TCTR">
      <DO name="Beh" type="TAVNA_INS"/>
      <DO name="Amp" type="TAVNA_SAV"/>
    </LNodeType>
    <LNodeType id="TAVNA_TVTR" lnClass="TVTR">
      <DO name="Beh" type="TAVNA_INS"/>
      <DO name="Vol" type="TAVNA_SAV"/>
    </LNodeType>
    <LNodeType id="TAVNA_XCBR" lnClass="XCBR">
      <DO name="Beh" type="TAVNA_INS"/>
      <DO name="Pos" type="TAVNA_DPC"/>
    </LNodeType>
    <DOType id="TAVNA_INS" cdc="INS">
      <DA name="stVal" bType="INT32" fc="ST"/>
      <DA name="q" bType="Quality" fc="ST"/>
      <DA name="t" bType="Timestamp" fc="ST"/>
    </DOType>
    <DOType id="TAVNA_SAV" cdc="SAV">
      <DA name="instMag" bType="Struct" type="TAVNA_AnalogueValue" fc="MX"/>
      <DA name="q" bType="Quality" fc="MX"/>
      <DA name="sVC" bType="Struct" type="TAVNA_ScaledValueConfig" fc="CF"/>
    </DOType>
    <DOType id="TAVNA_SPS" cdc="SPS">
      <DA name="stVal" bType="BOOLEAN" fc="ST" dchg="true"/>
      <DA name="q" bType="Quality" fc="ST" qchg="true"/>
      <DA name="t" bType="Timestamp" fc="ST"/>
    </DOType>
    <DOType id="TAVNA_DPC" cdc="DPC">
      <DA name="stVal" bType="Dbpos" type="Dbpos" fc="ST" dchg="true"/>
      <DA name="q" bType="Quality" fc="ST" qchg="true"/>
      <DA name="t" bType="Timestamp" fc="ST"/>
      <DA name="ctlModel" bType="Enum" type="ctlModel" fc="CF"/>
    </DOType>
    <DAType id="TAVNA_AnalogueValue">
      <BDA name="i" bType="INT32"/>
    </DAType>
    <DAType id="TAVNA_ScaledValueConfig">
      <BDA name="scaleFactor" bType="FLOAT32"/>
      <BDA name="offset" bType="FLOAT32"/>
    </DAType>
    <EnumType id="Dbpos">
      <EnumVal ord="0">intermediate-state</EnumVal>
      <EnumVal ord="1">off</EnumVal>
      <EnumVal ord="2">on</EnumVal>
      <EnumVal ord="3">bad-state</EnumVal>
    </EnumType>
    <EnumType id="ctlModel">
      <EnumVal ord="0">status-only</EnumVal>
    </EnumType>
)";

} // namespace

void writeTemplates(std::ostream& out, const TemplateNeeds& needs) {
    out << "  <DataTypeTemplates>\n";
    for (unsigned size : needs.ggioSizes) {
        out << "    <LNodeType id=\"TAVNA_GGIO_" << size << "\" lnClass=\"GGIO\">\n"
            << "      <DO name=\"Beh\" type=\"TAVNA_INS\"/>\n";
        for (unsigned i = 1; i <= size; ++i)
            out << "      <DO name=\"Ind" << i << "\" type=\"TAVNA_SPS\"/>\n";
        out << "    </LNodeType>\n";
    }
    out << kFixedTypes << "  </DataTypeTemplates>\n";
}

} // namespace TavGen
