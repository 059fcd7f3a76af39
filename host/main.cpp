// The host application: loads the analyser module (or the one named on the
// command line) and runs it over a small window of its own.
#include "host/CommandLine.h"
#include "host/HostApplication.h"
#include "host/StyleSheet.h"

#include <gtkmm/main.h>
#include <iostream>

int main(int argc, char** argv) {
    TavHost::CommandLine commandLine = TavHost::CommandLine::parse(argc, argv);
    if (commandLine.help) {
        std::cout << TavHost::CommandLine::usage();
        return 0;
    }
    if (!commandLine.error.empty()) {
        std::cerr << "tavna: " << commandLine.error << "\n" << TavHost::CommandLine::usage();
        return 1;
    }
    // Our own options are read; GTK sees the arguments only for its display options.
    int gtkArgc = 1;
    Gtk::Main kit(gtkArgc, argv);
    TavHost::loadStyleSheet();
    TavHost::HostApplication application(std::move(commandLine));
    return application.run();
}
