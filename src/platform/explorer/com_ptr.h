#pragma once

#include <windows.h>

#include <oaidl.h>
#include <unknwn.h>

#include <utility>

namespace tamrin {

// Keeps one reference to an object of the component model.
template <typename T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}
    // Adds a reference to one that somebody else keeps.
    explicit ComPtr(T* object) : object_(object) {
        if (object_) object_->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPtr() {
        if (object_) object_->Release();
    }

    // Takes over the reference that the caller has.
    static ComPtr Adopt(T* object) {
        ComPtr adopted;
        adopted.object_ = object;
        return adopted;
    }

    explicit operator bool() const { return object_ != nullptr; }
    T* operator->() const { return object_; }
    T* get() const { return object_; }

    // Where a call writes its answer, a reference of its own.
    T** Out() {
        *this = nullptr;
        return &object_;
    }

    // Another interface of the same object, null when it has none.
    template <typename U>
    ComPtr<U> As() const {
        ComPtr<U> other;
        if (object_) object_->QueryInterface(__uuidof(U), reinterpret_cast<void**>(other.Out()));
        return other;
    }

private:
    T* object_ = nullptr;
};

// Whether both are the same object. Only IUnknown tells: other interfaces may have several
// pointers.
inline bool SameObject(IUnknown* a, IUnknown* b) {
    if (a == b) return true;
    if (!a || !b) return false;
    return ComPtr<IUnknown>(a).As<IUnknown>().get() == ComPtr<IUnknown>(b).As<IUnknown>().get();
}

}  // namespace tamrin
