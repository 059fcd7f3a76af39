#pragma once

#include <string>
#include <vector>

namespace TavCapture {

struct NetInterface {
    std::string name;
    std::string description; // empty when the system has none
    bool up = false;         // administratively up and, where known, with a link
};

// Every interface the capture library lists, in its order. Throws CaptureError
// when it cannot list them.
std::vector<NetInterface> listInterfaces();

} // namespace TavCapture
