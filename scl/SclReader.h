#pragma once

#include "scl/SclModel.h"

#include <string>

namespace TavScl {

// Reads an SCD, ICD or CID file of any edition. Throws SclError naming the
// file and the line when it is not well-formed XML or not SCL; references the
// file does not resolve only leave warnings.
SclFile readSclFile(const std::string& path);

} // namespace TavScl
