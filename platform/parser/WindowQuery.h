#pragma once

#include "platform/parser/StreamRecords.h"

namespace TavIec61850Parser {

// The packages of one file inside [from, to], with the first index and the
// latest package before `from`. Binary search while the file's times never go
// backwards, a scan otherwise.
FilteredPackagesResult windowOf(const PackageFile& file, const Timest& from, const Timest& to);

} // namespace TavIec61850Parser
