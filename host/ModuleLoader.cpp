#include "host/ModuleLoader.h"

#include "platform/view/ModuleInterface.h"

#include <dlfcn.h>
#include <filesystem>

namespace TavHost {

namespace {

std::string lastDlError() {
    const char* e = dlerror();
    return e != nullptr ? e : "unknown error";
}

Tav::ModuleFactory findFactory(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::exists(path, ec))
        throw ModuleLoadError("module " + path + ": no such file");
    // A bare file name would send dlopen searching the library path instead.
    const std::string absolute = std::filesystem::absolute(path, ec).string();
    void* library = dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        throw ModuleLoadError("module " + path + ": cannot be loaded: " + lastDlError());
    dlerror();
    void* symbol = dlsym(library, Tav::moduleFactoryName);
    if (symbol == nullptr) {
        const std::string reason = lastDlError();
        dlclose(library);
        throw ModuleLoadError("module " + path + ": no " + Tav::moduleFactoryName +
                              " function: " + reason);
    }
    return reinterpret_cast<Tav::ModuleFactory>(symbol);
}

} // namespace

std::unique_ptr<Tav::ITavShell> loadModule(const std::string& path) {
    Tav::ModuleFactory factory = findFactory(path);
    Tav::ITavShell* shell = nullptr;
    try {
        shell = factory();
    } catch (const std::exception& e) {
        throw ModuleLoadError("module " + path + ": failed to start: " + e.what());
    } catch (...) {
        throw ModuleLoadError("module " + path + ": failed to start: unknown exception");
    }
    if (shell == nullptr)
        throw ModuleLoadError("module " + path + ": " + Tav::moduleFactoryName +
                              " returned no module");
    return std::unique_ptr<Tav::ITavShell>(shell);
}

} // namespace TavHost
