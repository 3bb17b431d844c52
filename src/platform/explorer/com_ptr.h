#pragma once

#include <windows.h>

#include <oaidl.h>
#include <unknwn.h>

#include <utility>

namespace tamrin {

// A counted reference to a COM object.
template <typename T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}
    // Adds a reference of its own.
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

    // Takes over the caller's reference.
    static ComPtr Adopt(T* object) {
        ComPtr adopted;
        adopted.object_ = object;
        return adopted;
    }

    explicit operator bool() const { return object_ != nullptr; }
    T* operator->() const { return object_; }
    T* get() const { return object_; }

    // Where a call writes a pointer whose reference becomes this one's.
    T** Out() {
        *this = nullptr;
        return &object_;
    }

    // Another interface of the same object; null when the object does not have it.
    template <typename U>
    ComPtr<U> As() const {
        ComPtr<U> other;
        if (object_) object_->QueryInterface(__uuidof(U), reinterpret_cast<void**>(other.Out()));
        return other;
    }

private:
    T* object_ = nullptr;
};

// Whether both are the same object. Only its IUnknown identifies an object: it may give other
// interfaces by several pointers.
inline bool SameObject(IUnknown* a, IUnknown* b) {
    if (a == b) return true;
    if (!a || !b) return false;
    return ComPtr<IUnknown>(a).As<IUnknown>().get() == ComPtr<IUnknown>(b).As<IUnknown>().get();
}

}  // namespace tamrin
