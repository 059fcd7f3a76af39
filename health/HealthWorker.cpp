#include "health/HealthWorker.h"

#include "health/StreamChecks.h"
#include "platform/parser/ParseError.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace TavHealth {

void HealthWorker::start(std::vector<HealthTarget> targets, Deliver deliver) {
    stop();
    cancel_.store(false);
    thread_ = std::thread([this, targets = std::move(targets), deliver = std::move(deliver)] {
        // The checks can wait; the interface thread, on a 2-core machine, cannot.
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), 10);
        for (std::size_t i = 0; i < targets.size() && !cancel_.load(); ++i) {
            std::shared_ptr<StreamHealth> health;
            std::string error;
            try {
                const HealthTarget& t = targets[i];
                const TavStream::SamplingClock* clock =
                    t.sv && t.clocks ? &t.clocks->of(*t.sv) : nullptr;
                health = std::make_shared<StreamHealth>(
                    t.sv ? checkStream(*t.sv, clock, &cancel_, t.nominal)
                         : checkStream(*t.goose, &cancel_));
            } catch (const TavIec61850Parser::ParseError& e) {
                // The stream's name goes with the delivery; the path would only repeat it.
                error = e.reason();
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
