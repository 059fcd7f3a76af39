#pragma once

#include <chrono>
#include <sigc++/connection.h>

namespace TavSession {

// A timer on the main loop that records how late its ticks come: a window
// that stops answering shows here as a late tick. A tick later than `logOver`
// is written to the application log, between the lines of what the window was
// doing then. Made, read and destroyed on the main thread.
class MainLoopProbe {
public:
    explicit MainLoopProbe(std::chrono::milliseconds period,
                           std::chrono::milliseconds logOver = std::chrono::milliseconds(100));
    ~MainLoopProbe();
    MainLoopProbe(const MainLoopProbe&) = delete;
    MainLoopProbe& operator=(const MainLoopProbe&) = delete;

    std::chrono::microseconds worstLateness() const { return worst_; }
    long ticks() const { return ticks_; }

private:
    bool _onTick();

    std::chrono::microseconds period_;
    std::chrono::microseconds logOver_;
    std::chrono::steady_clock::time_point last_;
    std::chrono::microseconds worst_{0};
    long ticks_ = 0;
    sigc::connection timer_;
};

} // namespace TavSession
