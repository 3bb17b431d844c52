#pragma once

namespace tamrin {

// Makes this thread an apartment of the component model, which the browser's objects and dragging
// need, for as long as it lives. Every object must have been given back before its end.
class Apartment {
public:
    Apartment();
    ~Apartment();
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    bool entered_;
};

}  // namespace tamrin
