#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace genutil {

// Ends a connection when destroyed, so that a view that goes first leaves no dangling handler behind.
class Connection {
public:
    Connection() = default;
    explicit Connection(std::function<void()> disconnect) : disconnect_(std::move(disconnect)) {}
    Connection(Connection&& other) noexcept : disconnect_(std::exchange(other.disconnect_, nullptr)) {}
    Connection& operator=(Connection&& other) noexcept {
        std::swap(disconnect_, other.disconnect_);
        return *this;
    }
    ~Connection() {
        if (disconnect_)
            disconnect_();
    }

private:
    std::function<void()> disconnect_;
};

// Something that happens, with the handlers to run when it does, in the order in which they were connected. A
// handler may connect, disconnect, or destroy the event itself while it runs.
template<class... Args>
class Event {
public:
    using Handler = std::function<void(Args...)>;

    // Connects for the life of the event.
    void connect(Handler handler) { slots_->push_back(std::make_shared<Handler>(std::move(handler))); }

    // Connects until the returned object goes.
    [[nodiscard]] Connection connectScoped(Handler handler) {
        auto slot = std::make_shared<Handler>(std::move(handler));
        slots_->push_back(slot);
        return Connection([slots = std::weak_ptr(slots_), weak = std::weak_ptr(slot)] {
            if (const auto list = slots.lock())
                if (const auto found = weak.lock())
                    // The place is kept: an emission may be walking the list.
                    std::ranges::replace(*list, found, std::shared_ptr<Handler>());
        });
    }

    void operator()(Args... args) const {
        const auto list = slots_;
        for (std::size_t i = 0, count = list->size(); i < count; ++i)
            if (const auto slot = (*list)[i])
                (*slot)(args...);
    }

private:
    std::shared_ptr<std::vector<std::shared_ptr<Handler>>> slots_ =
        std::make_shared<std::vector<std::shared_ptr<Handler>>>();
};

} // namespace genutil
