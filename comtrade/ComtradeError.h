#pragma once

#include <stdexcept>
#include <string>

namespace TavComtrade {

// Why an export did not happen. The message is for the command line; the
// window words each kind in its own language and adds the detail.
class ComtradeError : public std::runtime_error {
public:
    enum class Kind {
        NoChannel,   // nothing chosen
        NoSample,    // the window holds no frame of the chosen streams
        RatesDiffer, // SV streams sampled at different rates
        NotBoolean,  // a chosen GOOSE entry carries no boolean
        CannotWrite, // the output could not be written
        Unreadable,  // a capture file could not be read again
        Cancelled,
    };

    ComtradeError(Kind kind, const std::string& message, std::string detail = {})
        : std::runtime_error(message), kind_(kind), detail_(std::move(detail)) {}

    Kind kind() const { return kind_; }
    // The names, paths or rates the message is about, without the sentence.
    const std::string& detail() const { return detail_; }

private:
    Kind kind_;
    std::string detail_;
};

} // namespace TavComtrade
