#include "tests/presenter/streams/LoadedModel.h"

#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>
#include <map>

namespace TavTest {

using namespace std::chrono_literals;

LoadedModel::LoadedModel() {
    updated = model.getPackageListModel().signalUpdated.connect([this] { ++updates; });
}

LoadedModel::~LoadedModel() {
    updated.disconnect();
}

void LoadedModel::open(const std::string& path) {
    const int before = updates.load();
    model.parseFile(path);
    ASSERT_TRUE(pumpUntil([&] { return updates.load() > before; }, 60s)) << path;
    pumpPending();
}

std::string generated(const std::string& name, const std::vector<std::string>& options) {
    static std::map<std::string, std::string> made;
    auto found = made.find(name);
    if (found != made.end())
        return found->second;
    const std::string path = tempDir() + "/" + name + ".pcap";
    std::vector<std::string> args{path};
    args.insert(args.end(), options.begin(), options.end());
    runGenerator(args);
    return made[name] = path;
}

} // namespace TavTest
