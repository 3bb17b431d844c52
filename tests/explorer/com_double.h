#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>

namespace tamrin::test {

// How many doubles there are that somebody keeps a reference to.
inline std::size_t& DoublesAlive() {
    static std::size_t alive = 0;
    return alive;
}

// The part that all doubles of the browser's objects share: references, and no names of members.
template <typename Interface>
class ComDouble : public Interface {
public:
    ComDouble() { ++DoublesAlive(); }
    virtual ~ComDouble() { --DoublesAlive(); }
    ComDouble(const ComDouble&) = delete;
    ComDouble& operator=(const ComDouble&) = delete;

    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

protected:
    // Answers QueryInterface for one of the object's interfaces.
    template <typename T>
    static HRESULT Give(T* as, void** object) {
        *object = as;
        as->AddRef();
        return S_OK;
    }

private:
    ULONG references_ = 0;
};

// The same for one that is reached by names.
template <typename Interface>
class DispatchDouble : public ComDouble<Interface> {
public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
};

}  // namespace tamrin::test
