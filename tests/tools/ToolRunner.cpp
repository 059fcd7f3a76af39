#include "tests/tools/ToolRunner.h"

#include "tests/support/TestCaptures.h"

#include <fstream>
#include <sstream>

namespace TavTest {

namespace {
std::string quoted(const std::string& s) {
    std::string q = "'";
    for (char c : s)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}
} // namespace

ToolResult runTool(const char* envName, const std::vector<std::string>& args) {
    static int serial = 0;
    const std::string errFile = tempDir() + "/stderr-" + std::to_string(++serial) + ".txt";
    std::vector<std::string> argv{toolPath(envName)};
    argv.insert(argv.end(), args.begin(), args.end());
    // runCommand throws standard error away; route it to a file first.
    std::string cmd;
    for (const auto& a : argv)
        cmd += quoted(a) + " ";
    cmd += "2>" + quoted(errFile);
    ToolResult r;
    r.exitCode = runCommand({"sh", "-c", cmd}, r.out);
    std::ifstream err(errFile);
    std::stringstream text;
    text << err.rdbuf();
    r.err = text.str();
    return r;
}

std::vector<std::vector<std::string>> parseCsv(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        std::vector<std::string> fields;
        std::istringstream cells(line);
        std::string cell;
        while (std::getline(cells, cell, ','))
            fields.push_back(cell);
        rows.push_back(std::move(fields));
    }
    return rows;
}

} // namespace TavTest
