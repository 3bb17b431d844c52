#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/document.h"

namespace tamrin {

// Those who are told of something. A connection may outlive the list, and be dropped, or made,
// while its subscribers are being told.
template <class Events>
class Subscribers {
public:
    std::unique_ptr<Connection> Connect(Events& events) {
        list_->push_back(&events);
        return std::make_unique<Subscription>(list_, events);
    }

    bool empty() const { return list_->empty(); }

    // Calls `tell` with each that subscribed before the call and still does when its turn comes.
    template <class Tell>
    void ForEach(const Tell& tell) const {
        const std::vector<Events*> told = *list_;
        for (Events* events : told) {
            if (std::find(list_->begin(), list_->end(), events) != list_->end()) tell(*events);
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
