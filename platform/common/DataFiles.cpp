#include "platform/common/DataFiles.h"

#include <filesystem>

namespace Tav {

std::string dataFile(const std::string& relative) {
    namespace fs = std::filesystem;
    std::error_code ec;
    if (relative.empty() || fs::exists(relative, ec))
        return relative;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (ec || exe.empty())
        return relative;
    for (const fs::path& root :
         {exe.parent_path().parent_path() / "share" / "tavna", exe.parent_path()}) {
        const fs::path candidate = root / relative;
        if (fs::exists(candidate, ec))
            return candidate.string();
    }
    return relative;
}

} // namespace Tav
