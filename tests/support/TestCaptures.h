#pragma once

#include <string>
#include <vector>

namespace TavTest {

// Path of a real public capture from the shared test data.
std::string sharedCapture(const std::string& name);

// A fresh directory for this test process; removed at exit.
std::string tempDir();

// Runs the capture writer with the given arguments (the output path included);
// fails the current test if it does not exit with 0.
void runGenerator(const std::vector<std::string>& args);

// Waits until the file's data is on the disk, as a capture recorded earlier
// would be: a gigabyte just written is still being written back for tens of
// seconds, and any fsync the application makes meanwhile waits behind it.
void flushToDisk(const std::string& path);

// NAME.pcap in the temporary folder, written by the capture writer with these
// options the first time it is asked for.
std::string generated(const std::string& name, const std::vector<std::string>& options);

// Runs a command and returns its exit code, standard output in `out`; standard
// error goes to `err` when one is given, else it is thrown away.
int runCommand(const std::vector<std::string>& argv, std::string& out, std::string* err = nullptr);

// Path of a tool built beside the tests, from the environment ctest sets.
std::string toolPath(const char* envName);

// One word for sh, whatever characters it holds.
std::string shellQuote(const std::string& s);

// A file's whole content, or its lines; empty when it cannot be read.
std::string readFile(const std::string& path);
std::vector<std::string> readLines(const std::string& path);

} // namespace TavTest
