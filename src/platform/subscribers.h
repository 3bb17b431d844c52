#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/document.h"

namespace tamrin {

// The subscribers to some events. A connection may outlive this list, and may be made or dropped
// inside a callback.
template <class Events>
class Subscribers {
public:
    std::unique_ptr<Connection> Connect(Events& events) {
        list_->push_back(&events);
        return std::make_unique<Subscription>(list_, events);
    }

    bool empty() const { return list_->empty(); }

    // Runs `callback` for each subscriber of before the call that is still one when its turn comes.
    template <class Callback>
    void ForEach(const Callback& callback) const {
        const std::vector<Events*> subscribers = *list_;
        for (Events* events : subscribers) {
            if (std::find(list_->begin(), list_->end(), events) != list_->end()) callback(*events);
        }
    }

private:
    using List = std::vector<Events*>;

    class Subscription : public Connection {
    public:
        Subscription(std::shared_ptr<List> list, Events& events)
            : list_(std::move(list)), events_(&events) {}
        ~Subscription() override { list_->erase(std::find(list_->begin(), list_->end(), events_)); }

        Subscription(const Subscription&) = delete;
        Subscription& operator=(const Subscription&) = delete;

    private:
        std::shared_ptr<List> list_;
        Events* events_;
    };

    std::shared_ptr<List> list_ = std::make_shared<List>();
};

}  // namespace tamrin
