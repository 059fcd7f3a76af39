#pragma once

#include <ostream>
#include <set>

namespace TavGen {

// What the generated devices' logical nodes need of the type templates
// beyond the fixed types: a GGIO type of each number of binary inputs.
struct TemplateNeeds {
    std::set<unsigned> ggioSizes;
};

// The DataTypeTemplates section: SV values as measured values with quality
// (and a configuration attribute a measured-value data set leaves out),
// binary inputs and breaker positions as status values.
void writeTemplates(std::ostream& out, const TemplateNeeds& needs);

} // namespace TavGen
