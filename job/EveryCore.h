#pragma once

#include <cstddef>
#include <functional>

namespace TavJob {

// Runs `work(i)` for i in [0, count) spread over every core: the calling
// thread and, where there is more than one item, helpers at a lower priority,
// so that on a small machine the interface thread keeps a core. Returns when
// every item is done.
void forEachOnEveryCore(std::size_t count, const std::function<void(std::size_t)>& work);

// The calling thread at the priority of such a helper.
void lowerThreadPriority();

} // namespace TavJob
