#pragma once

#include "platform/view/ITavShell.h"

#include <string>
#include <vector>

namespace Tav {

// Optional for a module: the host hands it the files named on its command line,
// after open(), as if the user had chosen them one after another. The call
// returns at once; pacing the files (a new parse may cancel a running one) is
// the module's business.
class IFileOpenable {
public:
    virtual ~IFileOpenable();
    virtual void openFiles(const std::vector<std::string>& paths) = 0;
};

// The one symbol the host looks up in a module library.
inline constexpr const char* moduleFactoryName = "tavna_create_shell";
using ModuleFactory = ITavShell* (*)();

} // namespace Tav

// A module library defines this with C linkage; the host owns the returned shell
// and deletes it through the virtual destructor.
extern "C" Tav::ITavShell* tavna_create_shell();
