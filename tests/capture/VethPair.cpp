#include "tests/capture/VethPair.h"

#include "platform/parser/PcapParser.h"
#include "tests/support/TestCaptures.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

namespace TavCaptureTest {

namespace {

int shell(const std::string& command) {
    std::string out;
    return TavTest::runCommand({"sh", "-c", command + " 2>&1"}, out);
}

// A test process that crashed left its namespace behind.
void removeStaleNamespaces() {
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator("/run/netns", ec)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("tavna-test-", 0) != 0)
            continue;
        const long pid = std::strtol(name.c_str() + 11, nullptr, 10);
        if (pid > 0 && ::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH)
            shell("ip netns del " + name);
    }
}

} // namespace

VethPair::VethPair() : namespace_("tavna-test-" + std::to_string(::getpid())) {
    if (::geteuid() != 0) {
        skipped_ = "capturing needs root, and this test runs as another user";
        return;
    }
    removeStaleNamespaces();
    if (shell("ip netns add " + namespace_) != 0) {
        skipped_ = "network namespaces are not allowed here";
        namespace_.clear();
        return;
    }
    if (ip("link add " + listening_ + " type veth peer name " + sending_) != 0 ||
        ip("link set " + listening_ + " up") != 0 || ip("link set " + sending_ + " up") != 0) {
        skipped_ = "no veth pair could be made in a network namespace";
        return;
    }
    home_ = ::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
    const int target = ::open(("/run/netns/" + namespace_).c_str(), O_RDONLY | O_CLOEXEC);
    if (home_ < 0 || target < 0 || ::setns(target, CLONE_NEWNET) != 0)
        skipped_ = "the test cannot join its network namespace";
    if (target >= 0)
        ::close(target);
}

VethPair::~VethPair() {
    if (home_ >= 0) {
        ::setns(home_, CLONE_NEWNET);
        ::close(home_);
    }
    if (!namespace_.empty())
        shell("ip netns del " + namespace_);
}

int VethPair::ip(const std::string& arguments) const {
    return shell("ip -n " + namespace_ + " " + arguments);
}

void VethPair::replay(const std::string& capture, bool topSpeed) const {
    std::string out;
    std::string err;
    std::vector<std::string> argv{"ip", "netns", "exec", namespace_, "tcpreplay", "-q"};
    if (topSpeed)
        argv.push_back("--topspeed");
    argv.insert(argv.end(), {"-i", sending_, capture});
    ASSERT_EQ(TavTest::runCommand(argv, out, &err), 0) << out << err;
}

std::map<std::string, unsigned long long> streamCounts(const TavIec61850Parser::Db& db) {
    std::map<std::string, unsigned long long> counts;
    for (const auto& sv : db.svProto.svs)
        counts["sv " + sv.svId + " " + sv.srcMac] += sv.packageCount();
    for (const auto& goose : db.gooseProto.gooses)
        counts["goose " + goose.gocbRef + " " + goose.srcMac] += goose.packageCount();
    return counts;
}

std::map<std::string, unsigned long long> streamCounts(const std::string& capture) {
    TavIec61850Parser::Db db;
    TavIec61850Parser::Filter filter;
    filter.keep.sv = true;
    filter.keep.goose = true;
    const std::atomic<bool> never{false};
    TavIec61850Parser::PcapParser::parseFile(capture, db, filter, never, nullptr);
    auto counts = streamCounts(db);
    TavIec61850Parser::PcapParser::forgetFile(capture);
    return counts;
}

} // namespace TavCaptureTest
