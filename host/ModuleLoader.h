#pragma once

#include "platform/view/ITavShell.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace TavHost {

// A module that cannot be used; the message names the library and the reason.
class ModuleLoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Opens a module library and builds its shell through the exported factory.
// The library stays loaded until the process ends: module code may still sit
// in queued interface tasks and registered widget types after the shell goes.
std::unique_ptr<Tav::ITavShell> loadModule(const std::string& path);

} // namespace TavHost
