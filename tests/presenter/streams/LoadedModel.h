#pragma once

#include "model/TavNaModel.h"
#include "platform/view/UpdateViewGuard.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>

namespace TavTest {

// A capture model that opens files the way the menu does and waits until the
// worker has rebuilt the stream tree and the posted work has run.
class LoadedModel {
public:
    LoadedModel() {
        model.getLoad().setPoster(
            [](TavNA::CurrentLoad::Task task) { Tav::beginUpdateView(task); });
        updated = model.getPackageListModel().signalUpdated.connect([this] { ++updates; });
    }
    ~LoadedModel() { updated.disconnect(); }

    TavNA::TavNaModel model;

    // Opens the file and returns once its streams are in the tree.
    void open(const std::string& path) {
        const int before = updates.load();
        model.parseFile(path);
        ASSERT_TRUE(pumpUntil([&] { return updates.load() > before; }, std::chrono::seconds(60)))
            << path;
        pumpPending();
    }

private:
    std::atomic<int> updates{0};
    sigc::connection updated;
};

} // namespace TavTest
