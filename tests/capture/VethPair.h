#pragma once

#include <map>
#include <string>

namespace TavIec61850Parser {
struct Db;
}

namespace TavCaptureTest {

// A network of the test's own: a namespace holding a veth pair whose ends are
// up. The constructing thread joins the namespace until the pair goes, and the
// threads it starts meanwhile belong to it too. `skipped()` says why none
// could be made (not root, namespaces not allowed): the test then skips.
class VethPair {
public:
    VethPair();
    ~VethPair();
    VethPair(const VethPair&) = delete;
    VethPair& operator=(const VethPair&) = delete;

    const std::string& skipped() const { return skipped_; }
    // The end captured on, and the end frames are sent from.
    const std::string& listening() const { return listening_; }
    const std::string& sending() const { return sending_; }

    // Sends every frame of the capture from the sending end, as fast as the
    // sender can or at the capture's own pace; fails the test on an error.
    void replay(const std::string& capture, bool topSpeed = true) const;
    // Runs `ip` inside the namespace; its exit code.
    int ip(const std::string& arguments) const;

private:
    std::string namespace_;
    std::string listening_ = "tvcap0";
    std::string sending_ = "tvsend0";
    std::string skipped_;
    int home_ = -1; // the thread's own namespace, to go back to
};

// Frames per stream, by kind, identifier and source.
std::map<std::string, unsigned long long> streamCounts(const TavIec61850Parser::Db& db);
// The same for a file parsed on its own.
std::map<std::string, unsigned long long> streamCounts(const std::string& capture);

} // namespace TavCaptureTest
