#include "tools/session/MainLoopProbe.h"

#include "platform/common/Log.h"

#include <glibmm/main.h>
#include <string>

namespace TavSession {

MainLoopProbe::MainLoopProbe(std::chrono::milliseconds period, std::chrono::milliseconds logOver)
    : period_(period), logOver_(logOver), last_(std::chrono::steady_clock::now()) {
    timer_ = Glib::signal_timeout().connect(sigc::mem_fun(*this, &MainLoopProbe::_onTick),
                                            static_cast<unsigned>(period.count()));
}

MainLoopProbe::~MainLoopProbe() {
    timer_.disconnect();
}

bool MainLoopProbe::_onTick() {
    const auto now = std::chrono::steady_clock::now();
    const auto late = std::chrono::duration_cast<std::chrono::microseconds>(now - last_) - period_;
    worst_ = std::max(worst_, late);
    if (late > logOver_)
        TavLog::Log::writeInfo("Главный цикл опоздал на " + std::to_string(late.count() / 1000) +
                               " мс");
    last_ = now;
    ++ticks_;
    return true;
}

} // namespace TavSession
