#pragma once

#include "platform/view/IView.h"
#include "platform/view/ShellDescriptor.h"

#include <memory>
#include <sigc++/signal.h>
#include <string>

namespace Tav {

// The module interface the host drives. The host builds the module, reads its
// descriptor, calls open() with its own window's view and destroys the module
// after signalClosed. The order of the virtual operations is part of the
// binary contract with modules built separately: append, never reorder.
class ITavShell {
public:
    sigc::signal<void()> signalOpened; // emitted by the module at the end of open()
    sigc::signal<void()> signalClosed; // the module asks the host to close it

    virtual ~ITavShell();
    virtual void open(IView* parent) = 0;
    virtual std::shared_ptr<ShellDescriptor> descriptor() const = 0;
    // The host's package version, handed over before open().
    virtual void setPackageVersion(std::string version) { packageVersion_ = std::move(version); }
    virtual IView* getView() = 0;

    const std::string& packageVersion() const { return packageVersion_; }

private:
    std::string packageVersion_;
};

} // namespace Tav
