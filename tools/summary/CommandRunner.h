#pragma once

#include "tools/summary/Arguments.h"
#include "tools/summary/StreamTable.h"

#include <iostream>
#include <string>
#include <vector>

namespace TavInspect {

// True when `option` is among the arguments: it names the command.
inline bool namesCommand(const std::vector<std::string>& args, const std::string& option) {
    for (const auto& a : args)
        if (a == option)
            return true;
    return false;
}

// Parses the arguments, loads the captures (`options.files`) and runs
// `body(options, table)`. Exit codes: 0 done, 1 a file or the work failed,
// 2 wrong usage (said with `usage`).
template <typename Parse, typename Body>
int runOnCaptures(const std::vector<std::string>& args, const char* usage, Parse parse, Body body) {
    decltype(parse(args)) options;
    try {
        options = parse(args);
    } catch (const Usage& e) {
        std::cerr << "tavna-inspect: " << e.what() << '\n' << usage;
        return 2;
    }
    try {
        StreamTable table;
        table.load(options.files);
        body(options, table);
    } catch (const Usage& e) {
        std::cerr << "tavna-inspect: " << e.what() << '\n';
        return 2;
    } catch (const std::exception& e) {
        std::cout.flush();
        std::cerr << "tavna-inspect: " << e.what() << '\n';
        return 1;
    }
    return 0;
}

} // namespace TavInspect
