#include "tools/gen/Demo.h"
#include "tools/gen/GenOptions.h"
#include "tools/gen/SclWriter.h"

#include <filesystem>
#include <iostream>

int main(int argc, char** argv) {
    using namespace TavGen;
    GenRequest request;
    try {
        request = parseArguments(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const UsageError& e) {
        std::cerr << "tavna-gen: " << e.what() << "\n" << usageText();
        return 2;
    }
    if (request.help) {
        std::cout << usageText();
        return 0;
    }
    try {
        if (!request.demoDir.empty())
            writeDemo(request.demoDir);
        else
            writeCapture(request.out, request.scenario);
        if (!request.sclOut.empty())
            writeScl(request.sclOut, request.scenario, request.sclMismatches);
    } catch (const std::exception& e) {
        std::cerr << "tavna-gen: " << e.what() << "\n";
        // A half-written capture would only be mistaken for a truncated one later.
        std::error_code ignored;
        if (!request.out.empty())
            std::filesystem::remove(request.out, ignored);
        return 1;
    }
    return 0;
}
