#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>

#include "platform/explorer/com_object.h"

namespace tamrin::test {

// How many doubles there are that somebody keeps a reference to.
inline std::size_t& DoublesAlive() {
    static std::size_t alive = 0;
    return alive;
}

// The part that all doubles of the browser's objects share: they are counted.
template <typename Interface>
class ComDouble : public ComObject<Interface> {
public:
    ComDouble() { ++DoublesAlive(); }
    ~ComDouble() override { --DoublesAlive(); }

protected:
    // Answers QueryInterface for one of the object's interfaces.
    template <typename T>
    static HRESULT Give(T* as, void** object) {
        *object = as;
        as->AddRef();
        return S_OK;
    }
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
