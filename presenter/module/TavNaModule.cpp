// The module library's one entry point: the host finds this factory by name
// and owns the shell it returns.
#include "platform/view/ModuleInterface.h"
#include "presenter/TavNaPresenter.h"

extern "C" Tav::ITavShell* tavna_create_shell() {
    return new TavNA::TavNaPresenter();
}
