#pragma once

#include <stdexcept>
#include <string>

namespace TavCapture {

// An interface that cannot be captured on; the message names it and says why.
class CaptureError : public std::runtime_error {
public:
    CaptureError(const std::string& message, bool noPermission)
        : std::runtime_error(message), noPermission_(noPermission) {}
    // The system refused the right to capture, as opposed to a missing or
    // unsuitable interface: the user has to grant it.
    bool noPermission() const { return noPermission_; }

private:
    bool noPermission_;
};

} // namespace TavCapture
