#include "health/HealthWorker.h"

#include "health/StreamChecks.h"

namespace TavHealth {

void HealthWorker::start(std::vector<HealthTarget> targets, Deliver deliver) {
    stop();
    cancel_.store(false);
    thread_ = std::thread([this, targets = std::move(targets), deliver = std::move(deliver)] {
        for (std::size_t i = 0; i < targets.size() && !cancel_.load(); ++i) {
            std::shared_ptr<StreamHealth> health;
            std::string error;
            try {
                const HealthTarget& t = targets[i];
                health = std::make_shared<StreamHealth>(t.sv ? checkStream(*t.sv, &cancel_)
                                                             : checkStream(*t.goose, &cancel_));
            } catch (const std::exception& e) {
                error = e.what();
            }
            // A cancelled check saw only part of the stream.
            if (!cancel_.load())
                deliver(i, std::move(health), error);
        }
    });
}

void HealthWorker::stop() {
    cancel_.store(true);
    if (thread_.joinable())
        thread_.join();
}

} // namespace TavHealth
