#pragma once

#include "comtrade/ExportRequest.h"

#include <string>

namespace TavComtrade {

// Writes BASE.cfg and BASE.dat for the request. Both are written under
// temporary names and renamed only once complete, so a failed or cancelled
// export leaves nothing behind. Throws ComtradeError.
class ComtradeExporter {
public:
    static ExportResult write(const std::string& base, const ExportRequest& request,
                              const ProgressSink& progress = {});

    // The output's base: the path without a ".cfg" or ".dat" ending.
    static std::string basePath(const std::string& path);
};

} // namespace TavComtrade
