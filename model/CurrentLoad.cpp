#include "model/CurrentLoad.h"

#include <utility>

namespace TavNA {

CurrentLoad::CurrentLoad()
    : self(std::make_shared<char>()), interfaceThread(std::this_thread::get_id()) {}

void CurrentLoad::setPoster(Poster newPoster) {
    poster = std::move(newPoster);
}

CurrentLoad::Number CurrentLoad::begin() {
    const Number number = current.fetch_add(1) + 1;
    running = true;
    signalBegun.emit();
    return number;
}

void CurrentLoad::retire() {
    current.fetch_add(1);
    running = false;
    signalRetired.emit();
}

void CurrentLoad::settle() {
    // Settling needs no owner but the load itself.
    _post(std::nullopt, [this] {
        running = false;
        signalSettled.emit();
    });
}

void CurrentLoad::deliver(Owner owner, Task task) {
    if (isInterfaceThread()) {
        task();
        return;
    }
    post(std::move(owner), std::move(task));
}

void CurrentLoad::post(Owner owner, Task task) {
    _post(std::move(owner), std::move(task));
}

void CurrentLoad::postOwned(Owner owner, Task task) {
    Task guarded = [self = std::weak_ptr<void>(self), owner = std::move(owner),
                    task = std::move(task)] {
        const auto selfAlive = self.lock();
        const auto ownerAlive = owner.lock();
        if (selfAlive && ownerAlive)
            task();
    };
    if (poster)
        poster(std::move(guarded));
    else
        guarded();
}

void CurrentLoad::_post(std::optional<Owner> owner, Task task) {
    Task guarded = [this, self = std::weak_ptr<void>(self), of = current.load(),
                    owner = std::move(owner), task = std::move(task)] {
        const auto selfAlive = self.lock();
        if (!selfAlive || of != current.load())
            return;
        if (!owner) {
            task();
        } else if (const auto ownerAlive = owner->lock()) {
            task();
        }
    };
    if (poster)
        poster(std::move(guarded));
    else
        guarded();
}

} // namespace TavNA
