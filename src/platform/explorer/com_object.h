#pragma once

#include <windows.h>

#include <unknwn.h>

namespace tamrin {

// An object of this program that COM or the browser calls. It counts its references and deletes
// itself with the last one. A new one has none.
template <typename Interface>
class ComObject : public Interface {
public:
    ComObject() = default;
    virtual ~ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (!object) return E_POINTER;
        const bool known = id == IID_IUnknown || Knows(id);
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

protected:
    // Whether QueryInterface answers this interface, besides IUnknown.
    virtual bool Knows(REFIID id) const { return id == __uuidof(Interface); }

private:
    ULONG references_ = 0;
};

}  // namespace tamrin
