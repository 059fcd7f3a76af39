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

// Runs a command and returns its exit code, standard output in `out`.
int runCommand(const std::vector<std::string>& argv, std::string& out);

// Path of a tool built beside the tests, from the environment ctest sets.
std::string toolPath(const char* envName);

} // namespace TavTest
