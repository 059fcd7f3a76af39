#pragma once

#include "model/TavNaModel.h"

#include <atomic>
#include <sigc++/connection.h>
#include <string>
#include <vector>

namespace TavTest {

// A capture model that opens files the way the menu does and waits until the
// worker has rebuilt the stream tree and the posted work has run.
class LoadedModel {
public:
    LoadedModel();
    ~LoadedModel();

    TavNA::TavNaModel model;

    // Opens the file and returns once its streams are in the tree.
    void open(const std::string& path);

private:
    std::atomic<int> updates{0};
    sigc::connection updated;
};

// A capture written by the generator into this run's temp folder, once per name.
std::string generated(const std::string& name, const std::vector<std::string>& options);

} // namespace TavTest
