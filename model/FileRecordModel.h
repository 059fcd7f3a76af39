#pragma once

#include <string>

namespace TavNA {

// One opened capture file, known by the path handed to the parser.
class FileRecordModel {
public:
    std::string fileName;
};

} // namespace TavNA
